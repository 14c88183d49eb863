// The search of the reference. script/docs writes the entries, [title, address, page, text], into
// search_index.js. An entry is found if each word of the query is anywhere in its title or text.
(function () {
  'use strict';
  var MOST = 60;       // entries that are shown
  var AROUND = 70;     // characters that are shown before what was found, and twice as many after it

  var input = document.getElementById('query');
  var count = document.getElementById('count');
  var found = document.getElementById('found');

  // Lower is better; -1 for no match. Every export begins with "ut", so a name counts without it too.
  function rank(entry, phrase, words) {
    var title = entry[0].toLowerCase();
    var name = title.replace(/^ut_?/, '');
    var all = title + ' ' + entry[3].toLowerCase();
    if (title === phrase || name === phrase) return 0;
    if (title.indexOf(phrase) === 0 || name.indexOf(phrase) === 0) return 1;
    if (title.indexOf(phrase) > 0) return 2;
    if (words.every(function (word) { return title.indexOf(word) >= 0; })) return 3;
    if (all.indexOf(phrase) >= 0) return 4;
    return words.every(function (word) { return all.indexOf(word) >= 0; }) ? 5 : -1;
  }

  function element(parent, tag, text) {
    var child = document.createElement(tag);
    child.textContent = text;
    parent.appendChild(child);
    return child;
  }

  // The place in the text where the query, or the first of its words, is found.
  function appendExcerpt(item, text, phrase, words) {
    var lower = text.toLowerCase();
    var sought = [phrase].concat(words).filter(function (each) { return lower.indexOf(each) >= 0; })[0] || '';
    var at = Math.max(lower.indexOf(sought), 0);
    var from = Math.max(at - AROUND, 0);
    var excerpt = element(item, 'p', (from > 0 ? '\u2026' : '') + text.slice(from, at));
    element(excerpt, 'mark', text.slice(at, at + sought.length));
    var end = at + sought.length;
    excerpt.appendChild(document.createTextNode(text.slice(end, end + 2 * AROUND) + '\u2026'));
  }

  function show() {
    var phrase = input.value.trim().toLowerCase().replace(/\s+/g, ' ');
    var words = phrase.split(' ');
    found.textContent = count.textContent = '';
    if (phrase === '') return;
    var matches = tavkitIndex
      .map(function (entry, place) { return {entry: entry, rank: rank(entry, phrase, words), place: place}; })
      .filter(function (match) { return match.rank >= 0; })
      .sort(function (a, b) { return a.rank - b.rank || a.place - b.place; });
    count.textContent = matches.length === 0 ? 'Nothing was found.' :
      matches.length > MOST ? matches.length + ' entries, the first ' + MOST + ' of them:' : matches.length + ' found:';
    matches.slice(0, MOST).forEach(function (match) {
      var item = element(found, 'li', '');
      element(item, 'a', match.entry[0]).href = match.entry[1];
      element(item, 'span', ' ' + match.entry[2]);
      appendExcerpt(item, match.entry[3], phrase, words);
    });
  }

  input.value = new URLSearchParams(window.location.search).get('q') || '';
  input.addEventListener('input', show);
  show();
}());
