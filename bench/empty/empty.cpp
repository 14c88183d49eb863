// A shared object with nothing in it: what loading one costs at least.
