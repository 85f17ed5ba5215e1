#include "lmx/c_get_with_entities.h"

#include "lmx/limits.h"
#include "lmx/text.h"

namespace rubrica::lmx {

namespace {

constexpr std::size_t kLongestBuiltin = 4;  // "quot"

// Text whose only references are the built-in ones, as nearly all have it; false for any other.
bool expand_builtin(std::string_view raw, std::string& value) {
  value.clear();
  for (;;) {
    const std::size_t at = raw.find('&');
    value.append(raw.substr(0, at));
    if (at == std::string_view::npos) return true;
    raw.remove_prefix(at + 1);
    const std::size_t end = raw.substr(0, kLongestBuiltin + 1).find(';');
    const char builtin = end == std::string_view::npos ? '\0' : builtin_entity(raw.substr(0, end));
    if (builtin == '\0') return false;
    value.push_back(builtin);
    raw.remove_prefix(end + 1);
  }
}

}  // namespace

void value_builder::put(char c) {
  if (!is_space(c)) {
    put_bytes({&c, 1});
  } else if (_mode == white_space::keep) {
    _out->push_back(c);
  } else if (_mode == white_space::replace) {
    _out->push_back(' ');
  } else {
    _pending_space = !_out->empty();
  }
}

void value_builder::put_bytes(std::string_view bytes) {
  if (_pending_space) {
    _out->push_back(' ');
    _pending_space = false;
  }
  _out->append(bytes);
}

char builtin_entity(std::string_view name) {
  switch (name.size()) {
    case 2:
      return name == "lt" ? '<' : name == "gt" ? '>' : '\0';
    case 3:
      return name == "amp" ? '&' : '\0';
    case 4:
      return name == "apos" ? '\'' : name == "quot" ? '"' : '\0';
    default:
      return '\0';
  }
}

int c_get_with_entities::get() {
  while (!_frames.empty()) {
    if (errors().fatal_count() > 0) return -1;
    frame& top = _frames.back();
    if (!top.push_back.empty()) return top.push_back.pop();
    if (top.position < top.text.size()) return static_cast<unsigned char>(top.text[top.position++]);
    _frames.pop_back();
  }
  return get_raw();
}

void c_get_with_entities::unget(int c) {
  if (c < 0) return;
  if (_frames.empty()) {
    unget_raw(c);
  } else {
    _frames.back().push_back.push(c);
  }
}

bool c_get_with_entities::charge_expansion(std::size_t bytes) {
  _expanded += bytes;
  if (_expanded <= kMaxEntityExpansion) return true;
  fatal(ELMX_XML_BADLY_FORMED, "Entities expand to too much text");
  return false;
}

bool c_get_with_entities::push_entity(std::string_view name, const std::string& value, bool parameter) {
  for (const frame& open : _frames) {
    if (open.parameter == parameter && open.name == name) {
      fatal(ELMX_BAD_DTD, "Recursive entity definition for: " + std::string(name));
      return false;
    }
  }
  if (_frames.size() >= kMaxEntityDepth) {
    fatal(ELMX_RECURSIVE_ENTITY, "Entities are nested too deeply");
    return false;
  }
  if (!charge_expansion(value.size())) return false;
  _frames.push_back({std::string(name), parameter, value, 0, {}});
  return true;
}

const std::string* c_get_with_entities::find_parameter(std::string_view name) {
  const std::string* value = _parameter.find(name);
  if (value == nullptr) fatal(ELMX_ENTITY_NOT_FOUND, "Entity '%" + std::string(name) + "' not found");
  return value;
}

bool c_get_with_entities::expand_value(std::string_view raw, white_space mode, std::string& value) {
  if (mode == white_space::keep && expand_builtin(raw, value)) return errors().fatal_count() == 0;
  _value.begin(value, mode);
  c_entity_name_reader_for_attribute_data in(raw);
  bool good = true;
  for (int c = in.get(); c >= 0; c = in.get()) {
    if (c != '&') {
      _value.put(static_cast<char>(c));
    } else if (!read_reference(in, 0)) {
      good = false;
      break;
    }
  }
  return good && errors().fatal_count() == 0;
}

bool c_get_with_entities::read_stream_reference() {
  c_entity_name_reader_for_c_get in(*this);
  return read_reference(in, 0);
}

bool c_get_with_entities::read_reference(c_entity_name_reader& in, std::size_t depth) {
  int c = in.get();
  if (c == '#') {
    const long number = read_character_reference(in);
    if (number < 0) return false;
    put_referenced(static_cast<std::uint32_t>(number));
    return true;
  }
  std::string name;
  for (; c >= 0 && is_name_char(c); c = in.get()) name.push_back(static_cast<char>(c));
  if (c == ';') {
    if (const char builtin = builtin_entity(name); builtin != '\0') {
      _value.put(builtin);
      return true;
    }
    if (const std::string* text = _general.find(name); text != nullptr) {
      return in.may_push() ? push_entity(name, *text, false) : expand_in_place(name, *text, depth);
    }
  } else if (c >= 0) {
    in.unget(c);
  }
  _value.put_bytes("&" + name);
  if (c == ';') _value.put(';');
  return false;
}

bool c_get_with_entities::expand_in_place(std::string_view name, const std::string& text, std::size_t depth) {
  if (depth >= kMaxEntityDepth) {
    fatal(ELMX_RECURSIVE_ENTITY, "Recursive entity definition for: " + std::string(name));
    return false;
  }
  if (!charge_expansion(text.size())) return false;
  c_entity_name_reader_for_entity in(text);
  for (int c = in.get(); c >= 0; c = in.get()) {
    if (c != '&') {
      _value.put(static_cast<char>(c));
    } else if (!read_reference(in, depth + 1)) {
      return false;
    }
  }
  return true;
}

long c_get_with_entities::read_character_reference(c_entity_name_reader& in) {
  int c = in.get();
  const bool hexadecimal = c == 'x';
  if (hexadecimal) c = in.get();
  const auto digit_value = [hexadecimal](int digit) {
    if (is_digit(digit)) return digit - '0';
    if (hexadecimal && digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    if (hexadecimal && digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
    return -1;
  };
  if (digit_value(c) < 0) {
    if (c >= 0) in.unget(c);
    return -1;
  }
  std::uint32_t number = 0;
  for (; digit_value(c) >= 0; c = in.get()) {
    number = number * (hexadecimal ? 16 : 10) + static_cast<std::uint32_t>(digit_value(c));
    if (number > kMaxCharacterReference) return -1;
  }
  if (c != ';' && c >= 0) in.unget(c);
  if (is_high_surrogate(number) || is_low_surrogate(number)) return -1;
  return number == 0x85 || number == 0x2028 ? '\n' : static_cast<long>(number);
}

void c_get_with_entities::put_referenced(std::uint32_t code_point) {
  char bytes[4];
  const int count = encode_utf8(code_point, bytes);
  if (count == 1 && _normalise_references) {
    _value.put(bytes[0]);
  } else {
    _value.put_bytes({bytes, static_cast<std::size_t>(count)});
  }
}

}  // namespace rubrica::lmx
