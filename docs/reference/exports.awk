# The exports of a header, one a line, with tabs: ordinal, name, bytes of arguments, family, wide twin or "-", and the
# first sentence of its text.
/@defgroup / { family = $3 }
/^\/\*\*/ { text = ""; comment = 1 }
comment { line = $0; gsub(/^\/\*\*|^ \*\/?|\*\/$/, "", line); text = text line " " }
/\*\/$/ { comment = 0 }
/^UT_EXPORT\(/ {
  ordinal = $0; gsub(/^UT_EXPORT\(|\).*/, "", ordinal)
  gsub(/^ +| +$|@param.*|@return.*/, "", text); gsub(/ +/, " ", text)
  if (match(text, /\. /)) text = substr(text, 1, RSTART)
  sentence[ordinal] = text; familyOf[ordinal] = family
}
END {
  command = "awk -v mark=UT_EXPORT -v form=entries -f cmake/declarations.awk '" FILENAME "'"
  while ((command | getline entry) > 0) {
    split(entry, part, /[(), ]+/)
    bytes[part[2]] = part[4]; name[part[2]] = part[3]; ordinalOf[part[3]] = part[2]
  }
  for (ordinal in name) {
    twin = twin_of(name[ordinal])
    print ordinal "\t" name[ordinal] "\t" bytes[ordinal] "\t" familyOf[ordinal] "\t" twin "\t" sentence[ordinal]
  }
}

# utName and utNameW, utName_XBuffer and utNameW_XBuffer, utNameString and utNameWideString.
function twin_of(byteName,   wideName) {
  wideName = byteName "W"
  if (wideName in ordinalOf) return wideName
  wideName = byteName
  return (sub(/_/, "W_", wideName) || sub(/String/, "WideString", wideName)) && wideName in ordinalOf ? wideName : "-"
}
