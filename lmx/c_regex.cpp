#include "lmx/c_regex.h"

#include <algorithm>

#include "lmx/text.h"

namespace rubrica::lmx {

namespace {

constexpr std::size_t kMaxRepeat = 255;  // of "{n}"; the schemas stop at 12

}  // namespace

c_regex::c_regex(const char* pattern) : _pattern(pattern) {
  const fragment whole = parse_alternation();
  if (!at_end()) _valid = false;
  const std::size_t accept = add({state::accept, 0, kOpen, kOpen});
  _states[whole.end].next = accept;
  _begin = whole.begin;
}

std::size_t c_regex::add(state added) {
  _states.push_back(added);
  return _states.size() - 1;
}

c_regex::fragment c_regex::empty() {
  const std::size_t only = add({state::split, 0, kOpen, kOpen});
  return {only, only};
}

c_regex::fragment c_regex::join(fragment left, fragment right) {
  _states[left.end].next = right.begin;
  return {left.begin, right.end};
}

c_regex::fragment c_regex::add_set(const byte_set& bytes) {
  _sets.push_back(bytes);
  const std::size_t end = empty().end;
  return {add({state::set, _sets.size() - 1, end, kOpen}), end};
}

c_regex::fragment c_regex::parse_alternation() {
  fragment result = parse_sequence();
  while (peek() == '|') {
    ++_position;
    const fragment branch = parse_sequence();
    const std::size_t end = empty().end;
    _states[result.end].next = end;
    _states[branch.end].next = end;
    result = {add({state::split, 0, result.begin, branch.begin}), end};
  }
  return result;
}

c_regex::fragment c_regex::parse_sequence() {
  fragment result = empty();
  while (_valid && !at_end() && peek() != '|' && peek() != ')') result = join(result, parse_repeated());
  return result;
}

c_regex::fragment c_regex::parse_repeated() {
  const std::size_t atom_begin = _position;
  fragment atom = parse_atom();
  const std::size_t atom_end = _position;
  const std::size_t end = peek() == '?' || peek() == '+' ? empty().end : 0;
  switch (peek()) {
    case '?':
      ++_position;
      _states[atom.end].next = end;
      return {add({state::split, 0, atom.begin, end}), end};
    case '+':
      ++_position;
      _states[atom.end].next = atom.begin;
      _states[atom.end].other = end;
      return {atom.begin, end};
    case '{': {
      ++_position;
      std::size_t count = 0;
      for (; is_digit(peek()) && count <= kMaxRepeat; ++_position) {
        count = count * 10 + static_cast<std::size_t>(peek() - '0');
      }
      if (peek() != '}' || count == 0 || count > kMaxRepeat) {
        _valid = false;
        return atom;
      }
      const std::size_t after = _position + 1;
      atom = repeat(atom_begin, atom_end, atom, count);
      _position = after;
      return atom;
    }
    default:
      return atom;
  }
}

// The atom `count` times in a row: parsed again for each, since a machine can't be shared between places.
c_regex::fragment c_regex::repeat(std::size_t atom_begin, std::size_t atom_end, fragment first, std::size_t count) {
  for (std::size_t i = 1; i < count && _valid; ++i) {
    _position = atom_begin;
    first = join(first, parse_atom());
    if (_position != atom_end) _valid = false;
  }
  return first;
}

int c_regex::parse_escaped() {
  ++_position;
  if (at_end() || is_letter(peek()) || is_digit(peek())) {
    _valid = false;
    return 0;
  }
  return static_cast<unsigned char>(_pattern[_position++]);
}

c_regex::byte_set c_regex::parse_class() {
  byte_set bytes;
  ++_position;
  while (!at_end() && peek() != ']') {
    const int first = peek() == '\\' ? parse_escaped() : static_cast<unsigned char>(_pattern[_position++]);
    int last = first;
    if (peek() == '-' && _position + 1 < _pattern.size() && _pattern[_position + 1] != ']') {
      ++_position;
      last = peek() == '\\' ? parse_escaped() : static_cast<unsigned char>(_pattern[_position++]);
    }
    if (!_valid) return bytes;
    for (int c = first; c <= last; ++c) bytes.has[c] = true;
  }
  if (at_end()) _valid = false;
  ++_position;
  return bytes;
}

c_regex::fragment c_regex::parse_atom() {
  if (peek() == '(') {
    ++_position;
    const fragment group = parse_alternation();
    if (peek() != ')') _valid = false;
    ++_position;
    return group;
  }
  if (peek() == '[') return add_set(parse_class());
  byte_set bytes;
  if (peek() == '\\') {
    bytes.has[parse_escaped()] = true;
  } else {
    if (std::string_view("?+{}*.^$]").find(peek()) != std::string_view::npos) _valid = false;
    bytes.has[static_cast<unsigned char>(_pattern[_position++])] = true;
  }
  return add_set(bytes);
}

// Adds the states that `index` leads to without taking a byte.
void c_regex::follow(std::size_t index, std::vector<bool>& seen, std::vector<std::size_t>& out) const {
  std::vector<std::size_t> todo{index};
  while (!todo.empty()) {
    const std::size_t at = todo.back();
    todo.pop_back();
    if (at == kOpen || seen[at]) continue;
    seen[at] = true;
    if (_states[at].kind != state::split) {
      out.push_back(at);
      continue;
    }
    todo.push_back(_states[at].next);
    todo.push_back(_states[at].other);
  }
}

bool c_regex::matches(std::string_view text) const {
  if (!_valid) return false;
  std::vector<std::size_t> now;
  std::vector<std::size_t> next;
  std::vector<bool> seen(_states.size());
  follow(_begin, seen, now);
  for (const char c : text) {
    next.clear();
    seen.assign(_states.size(), false);
    for (const std::size_t index : now) {
      const state& at = _states[index];
      if (at.kind == state::set && _sets[at.set_index].has[static_cast<unsigned char>(c)]) follow(at.next, seen, next);
    }
    if (next.empty()) return false;
    now.swap(next);
  }
  return std::any_of(now.begin(), now.end(), [this](std::size_t i) { return _states[i].kind == state::accept; });
}

}  // namespace rubrica::lmx
