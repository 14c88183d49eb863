# The entries of the search, from the pages that Doxygen wrote: an export, a constant, or a part of a page from one
# heading to the next, as ["title", "address", "page", "text"]. Lists of members repeat what the entries say.
FNR == 1 { close_entry(); inside = 0; file = FILENAME; sub(/.*\//, "", file) }
/<title>/ { page = plain($0); sub(/^ *TAVKIT: /, "", page) }
/<div class="contents">/ { inside = 1; open_entry(page, "") }
/<!-- contents -->/ { close_entry(); inside = 0 }
!inside { next }
/class="memtitle"/ {
  anchor = $0; sub(/.*<a href="#/, "", anchor); sub(/".*/, "", anchor)
  heading = $0; sub(/.*<\/span>/, "", heading); heading = plain(heading); sub(/\(\)$/, "", heading)
  open_entry(heading, "#" anchor); next
}
/<div class="ttc"/ { next }  # what a page shows where the pointer rests on a name
/<table class="memberdecls">/ { close_entry(); next }
/^<h1><a class="anchor" id=/ {
  anchor = $0; sub(/.* id="/, "", anchor); sub(/".*/, "", anchor)
  getline; open_entry(plain($0), "#" anchor); next
}
{ text = text " " plain($0) }
END { close_entry() }

function open_entry(newTitle, anchor) {
  close_entry()
  title = newTitle; address = file anchor; isOpen = 1
}
function close_entry() {
  gsub(/[ \t]+/, " ", text); sub(/^ /, "", text)
  if (isOpen && text != "") print "[" quoted(title) "," quoted(address) "," quoted(page) "," quoted(text) "],"
  isOpen = 0; text = ""
}
function plain(html) {
  gsub(/<\/?(a|b|code|em|span)( [^>]*)?>/, "", html); gsub(/<[^>]*>/, " ", html)
  gsub(/&#160;|&nbsp;|&#9670;/, " ", html)
  gsub(/&lt;/, "<", html); gsub(/&gt;/, ">", html); gsub(/&quot;/, "\"", html); gsub(/&#39;/, "'", html)
  gsub(/&amp;/, "\\&", html)
  sub(/^ */, "", html); sub(/ *$/, "", html)
  return html
}
function quoted(text) {
  gsub(/\\/, "\\\\", text); gsub(/"/, "\\\"", text)
  return "\"" text "\""
}
