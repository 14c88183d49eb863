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
    twin = name[ordinal] "W"
    if (sub(/_XBufferW$/, "W_XBuffer", twin) + 0 == 0 && !(twin in ordinalOf)) { twin = name[ordinal]; sub(/String/, "WideString", twin) }
    if (!(twin in ordinalOf) || twin == name[ordinal]) twin = "-"
    print ordinal "\t" name[ordinal] "\t" bytes[ordinal] "\t" familyOf[ordinal] "\t" twin "\t" sentence[ordinal]
  }
}
