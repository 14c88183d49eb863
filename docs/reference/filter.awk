# What Doxygen reads in the place of a header or a page. In comments and in text every name of an export or
# constant becomes a link; each export tells its ordinal and what it takes off the stack, and a byte form
# names its wide twin. Code and pictures (@code, fenced blocks) stay as they are.
FNR == 1 { isHeader = FILENAME ~ /\.h$/; if (isHeader) read_exports(FILENAME) }

isHeader && /^\/\*\*/ { comment = 1 }
/[@]code/ { block = 1 }
!isHeader && /^ *```/ { block = !block }
{
  line = $0
  if (!block && (isHeader ? comment : 1)) line = linked(line)
  if (/[@]endcode/) block = 0
}
# The end of a comment waits for the line behind it, which may be an export.
comment && /\*\/$/ { comment = 0; held = line; holding = 1; next }
holding {
  holding = 0
  if (/^UT_EXPORT\(/) sub(/ *\*\/$/, told($0) " */", held)
  print held
}
{ print line }
END { if (holding) print held }

function told(text,   ordinal, name) {
  ordinal = text; gsub(/^UT_EXPORT\(|\).*/, "", ordinal)
  name = nameOf[ordinal]
  return " @ordinal{" ordinal "," bytesOf[ordinal] "}" (name in twinOf ? " @see #" twinOf[name] : "")
}

function read_exports(path,   command, entry, part, name, twin) {
  command = "awk -v mark=UT_EXPORT -v form=entries -f cmake/declarations.awk '" path "'"
  while ((command | getline entry) > 0) {
    split(entry, part, /[(), ]+/)
    nameOf[part[2]] = part[3]; bytesOf[part[2]] = part[4]; ordinalOf[part[3]] = part[2]
  }
  close(command)
  for (name in ordinalOf) {
    twin = name ~ /_XBuffer$/ ? substr(name, 1, length(name) - 8) "W_XBuffer" : name "W"
    if (name == "utXBufCopyStringTo") twin = "utXBufCopyWideStringTo"
    if (twin in ordinalOf) twinOf[name] = twin
  }
}

function linked(text,   done, before, word, behind) {
  sub(/@param [A-Za-z]+(, [A-Za-z]+)+/, "&\001", text)  # Doxygen wants a list without blanks
  if (index(text, "\001")) {
    done = text; sub(/\001.*/, "", done); text = substr(text, length(done) + 2)
    before = done; sub(/@param .*/, "", before); done = substr(done, length(before) + 8)
    gsub(/, /, ",", done); done = before "@param " done
  }
  while (match(text, /[A-Za-z0-9_#]+/)) {
    before = substr(text, 1, RSTART - 1)
    word = substr(text, RSTART, RLENGTH)
    behind = substr(text, RSTART + RLENGTH)
    if (word !~ /^(ut[A-Z][A-Za-z0-9]*(_XBuffer)?|UT_[A-Z_]*[A-Z])$/) {
      done = done before word
    } else if (before ~ /`$/ && behind ~ /^`/) {
      sub(/`$/, "", before); behind = substr(behind, 2)
      done = done before "<code>#" word "</code>"
    } else {
      done = done before (behind ~ /^\(/ ? "" : "#") word
    }
    text = behind
  }
  return done text
}
