# Follows the code of functions through a disassembly of the image, over every branch and every jump to
# another function, and tells how many bytes of arguments each way out takes off the stack.
# Usage: awk -v data=ADDRESS -f returns.awk FUNCTIONS IMPORTS WORDS DISASSEMBLY
#   FUNCTIONS    lines: name, address
#   IMPORTS      lines: address of the slot in the import table, name, bytes of arguments
#   WORDS        the 32-bit words of the read-only data, one a line; the first stands at `data`
#   DISASSEMBLY  what llvm-objdump -d --no-show-raw-insn prints
# Addresses are eight hexadecimal digits, as the disassembler writes them; `data` is decimal.
# Prints lines: name, bytes; or: name, what is wrong.
BEGIN { FS = "\t" }
FNR == 1 { file++ }
file == 1 { start[$1] = $2 }
file == 2 { taken[$2] = $3; import[$1] = $2 }
file == 3 { gsub(/ /, "", $1); word[sprintf("%08x", data + 4 * (FNR - 1))] = $1 }
file == 4 && /^[0-9a-f]+: / {
  address = substr($1, 1, 8)
  operation[address] = $2
  operand[address] = $3
  following[previous] = address
  previous = address
}
END {
  for (name in start) follow(name, start[name])
}

# Follows a function from its first address. What is left to look at waits in `todo`.
function follow(name, first,   address) {
  left = 0
  todo[++left] = first
  while (left > 0) {
    address = todo[left--]
    while (address != "" && !((name, address) in seen)) {
      seen[name, address] = 1
      address = step(name, address)
    }
  }
}

# Gives the address to go on at, empty where the way ends.
function step(name, address,   verb, where) {
  verb = operation[address]
  where = operand[address]
  if (verb == "") return end(name, "leaves the code at " address)
  if (verb ~ /ret/) return end(name, number(where))
  if (verb ~ /^(ud2|int3|hlt)/) return ""
  if (verb ~ /^jmp/) return jump(name, where)
  if (verb ~ /^(j|loop)/) todo[++left] = substr(where, 3, 8)
  return following[address]
}

function jump(name, where,   slot) {
  if (where ~ /^0x/) return substr(where, 3, 8)
  slot = substr(where, 4, 8)
  if (where ~ /^\*0x[0-9a-f]+$/ && slot in import) return end(name, taken[import[slot]])
  if (where !~ /^\*0x[0-9a-f]+\(,%e..,4\)$/) return end(name, "jumps to an unknown place: " where)
  # A table of jumps goes on as long as its words are addresses of code.
  for (; word[slot] in operation; slot = sprintf("%08x", number("0x" slot) + 4)) todo[++left] = word[slot]
  return ""
}

function end(name, what) {
  if (!((name, what) in told)) print name "\t" what
  told[name, what] = 1
  return ""
}

# The value of a number as the disassembler writes it: $0x10, 0x10; nothing is zero.
function number(text,   value, i) {
  sub(/^\$?0x/, "", text)
  for (i = 1; i <= length(text); i++) value = 16 * value + index("123456789abcdef", substr(text, i, 1))
  return value + 0
}
