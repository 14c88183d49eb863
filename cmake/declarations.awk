# Turns the declarations marked  MARK(tag) type UT_API name(arguments);  into one of these forms:
#   def      the module-definition file of the library (tag: the ordinal)
#   stdcall_def      the same, with the bytes of arguments in the names
#   imports  the module-definition file of the system module `module` (tag: the module)
#   stdcall_imports  the same, with the bytes of arguments in the names
#   entries  lines UT_ENTRY(tag, name, bytes), for tables in code
#   pairs    lines UT_PAIR(operation, name, wide name), for what drives both forms of an export
# Every argument takes one four-byte slot of the 32-bit stack: none of them is wider.
BEGIN {
  if (form ~ /def$/) print "LIBRARY TAVKIT.DLL\nEXPORTS"
  if (form ~ /imports$/) print "LIBRARY " module ".dll\nEXPORTS"
  marker = "^" mark "\\([A-Z0-9]+\\)"
}
$0 ~ marker { text = ""; open = 1 }
open { text = text " " $0 }
open && /;/ { open = 0; emit(text) }

function emit(text,   tag, name, bytes) {
  tag = text; sub(/^[^(]*\(/, "", tag); sub(/\).*/, "", tag)
  sub(/^[^)]*\)/, "", text)
  name = text; sub(/\(.*/, "", name); sub(/.*[ *]/, "", name)
  sub(/^[^(]*\(/, "", text); sub(/\).*/, "", text)
  bytes = text ~ /^ *(void)? *$/ ? 0 : 4 * split(text, unused, ",")
  if (form == "def") print "  " name " @" tag
  if (form == "stdcall_def") print "  " name "@" bytes " @" tag
  if (form == "imports" && tag == module) print "  " name
  if (form == "stdcall_imports" && tag == module) print "  " name "@" bytes
  if (form == "entries") print "UT_ENTRY(" tag ", " name ", " bytes ")"
  names[++count] = name; isName[name] = 1
}

# The wide twin of an export: utNameW, utNameW_Suffix, or utNameWideString for utNameString.
function twin(name,   wide) {
  if (name "W" in isName) return name "W"
  wide = name
  return (sub(/_/, "W_", wide) || sub(/String/, "WideString", wide)) && wide in isName ? wide : ""
}

END {
  for (i = 1; form == "pairs" && i <= count; ++i) {
    if (twin(names[i])) print "UT_PAIR(" substr(names[i], 3) ", " names[i] ", " twin(names[i]) ")"
  }
}
