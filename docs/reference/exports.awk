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
  while (read_entry("entries")) { name[part[2]] = part[3]; bytes[part[2]] = part[4] }
  while (read_entry("pairs")) twinOf[part[3]] = part[4]
  for (ordinal in name) {
    twin = name[ordinal] in twinOf ? twinOf[name[ordinal]] : "-"
    print ordinal "\t" name[ordinal] "\t" bytes[ordinal] "\t" familyOf[ordinal] "\t" twin "\t" sentence[ordinal]
  }
}

# The next line of a table that is made from the declarations, in parts.
function read_entry(form,   entry) {
  if (("awk -v mark=UT_EXPORT -v form=" form " -f cmake/declarations.awk '" FILENAME "'" | getline entry) <= 0) return 0
  return split(entry, part, /[(), ]+/)
}
