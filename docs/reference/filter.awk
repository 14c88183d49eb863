# What Doxygen reads in the place of a header or a page. In comments and in text every name of an export or
# constant becomes a link; each export tells its ordinal and what it takes off the stack, and a byte form
# names its wide twin. Code and pictures (@code, fenced blocks) stay as they are.
BEGIN { name = "(ut[A-Z][A-Za-z0-9]*(_XBuffer)?|UT_[A-Z_]*[A-Z])" }
FNR == 1 { isHeader = FILENAME ~ /\.h$/; if (isHeader) read_exports(FILENAME) }

isHeader && /^\/\*\*/ { comment = 1 }
/[@]code/ { block = 1 }
!isHeader && /^ *```/ { block = !block }
{
  line = $0
  if (!block && (isHeader ? comment : 1)) line = linked(line)
  if (/[@]endcode/) block = 0
}
# The end of a comment waits for the next line, which may be an export.
comment && /\*\/$/ { comment = 0; held = line; holding = 1; next }
holding {
  holding = 0
  if (/^UT_EXPORT\(/) sub(/ *\*\/$/, told($0) " */", held)
  print held
}
{ print line }
END { if (holding) print held }

function told(text,   ordinal) {
  ordinal = text; gsub(/^UT_EXPORT\(|\).*/, "", ordinal)
  return " @ordinal{" ordinal "," bytesOf[ordinal] "}" (twinOf[ordinal] == "-" ? "" : " @see #" twinOf[ordinal])
}

function read_exports(path,   command, entry, part) {
  command = "awk -f docs/reference/exports.awk '" path "'"
  while ((command | getline entry) > 0) {
    split(entry, part, "\t")
    bytesOf[part[1]] = part[3]; twinOf[part[1]] = part[5]
  }
  close(command)
}

# Names get the mark of a link; of what stands in backticks, only a name alone does.
function linked(text,   part, n, i, done, list) {
  if (match(text, /@param [A-Za-z]+(, [A-Za-z]+)+/)) {  # Doxygen wants a list without blanks
    list = substr(text, RSTART + 7, RLENGTH - 7); gsub(/, /, ",", list)
    text = substr(text, 1, RSTART + 6) list substr(text, RSTART + RLENGTH)
  }
  n = split(text, part, "`")
  for (i = 1; i <= n; ++i) {
    if (i % 2) gsub(name, "#&", part[i])
    else if (match(part[i], name) && RSTART == 1 && RLENGTH == length(part[i])) part[i] = "<code>#" part[i] "</code>"
    else part[i] = "`" part[i] (i < n ? "`" : "")
    done = done part[i]
  }
  return done
}
