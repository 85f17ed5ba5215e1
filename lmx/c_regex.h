// A matcher for the patterns of the schemas: literals, escapes, classes with ranges, groups, alternation, "?", "+" and
// "{n}". Built once from the pattern's text and never changed, so that all threads may share it. A pattern matches the
// whole text, as xsd:pattern does.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace rubrica::lmx {

class c_regex {
 public:
  // A pattern outside the syntax above matches nothing; is_valid tells.
  explicit c_regex(const char* pattern);

  bool is_valid() const { return _valid; }
  bool matches(std::string_view text) const;

 private:
  // The pattern as a machine of states: `set` takes one byte, `split` goes two ways.
  struct state {
    enum kind_t : unsigned char { set, split, accept } kind;
    std::size_t set_index;
    std::size_t next;
    std::size_t other;
  };
  // A piece of the machine with one entry; its open ends are the states whose `next` is kOpen.
  struct fragment {
    std::size_t begin;
    std::size_t end;  // an empty split that everything in the piece leads to
  };
  struct byte_set {
    bool has[256] = {};
  };

  static constexpr std::size_t kOpen = static_cast<std::size_t>(-1);

  fragment parse_alternation();
  fragment parse_sequence();
  fragment parse_repeated();
  fragment parse_atom();
  fragment repeat(std::size_t atom_begin, std::size_t atom_end, fragment first, std::size_t count);
  byte_set parse_class();
  int parse_escaped();
  std::size_t add(state added);
  fragment add_set(const byte_set& bytes);
  fragment empty();
  fragment join(fragment left, fragment right);
  bool at_end() const { return _position >= _pattern.size(); }
  char peek() const { return at_end() ? '\0' : _pattern[_position]; }
  void follow(std::size_t index, std::vector<bool>& seen, std::vector<std::size_t>& out) const;

  std::string _pattern;
  std::size_t _position = 0;
  bool _valid = true;
  std::vector<state> _states;
  std::vector<byte_set> _sets;
  std::size_t _begin = 0;
};

}  // namespace rubrica::lmx
