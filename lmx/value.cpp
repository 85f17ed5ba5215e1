#include "lmx/value.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

#include "lmx/c_regex.h"
#include "lmx/text.h"

namespace rubrica::lmx {

namespace {

// Calls `action` with a value-initialised T of the kind, whose type is what counts.
template <class Action>
decltype(auto) with_kind(value_kind kind, Action action) {
  switch (kind) {
    case value_kind::boolean:
      return action(bool{});
    case value_kind::int8:
      return action(std::int8_t{});
    case value_kind::uint8:
      return action(std::uint8_t{});
    case value_kind::int16:
      return action(std::int16_t{});
    case value_kind::uint16:
      return action(std::uint16_t{});
    case value_kind::int32:
      return action(std::int32_t{});
    case value_kind::uint32:
      return action(std::uint32_t{});
    case value_kind::int64:
      return action(std::int64_t{});
    case value_kind::uint64:
      return action(std::uint64_t{});
    case value_kind::float64:
      return action(double{});
    case value_kind::base64:
    case value_kind::hex:
      return action(c_binary{});
    case value_kind::datetime:
      return action(c_datetime{});
    case value_kind::empty:
      return action(c_empty{});
    case value_kind::text:
      break;
  }
  return action(std::string{});
}

// Booleans of a vector are bytes, since std::vector<bool> has no elements to point at.
template <class T>
using list_of = std::vector<std::conditional_t<std::is_same_v<T, bool>, std::uint8_t, T>>;

constexpr const facets kNoFacets{};

const facets& limits_of(const simple_type& type) {
  return type.limits == nullptr ? kNoFacets : *type.limits;
}

elmx_error check_length(const facets& limits, std::size_t length) {
  if (length > limits.max_length && limits.max_length != kUnbounded) return ELMX_LENGTH_TOO_LONG;
  return length < limits.min_length ? ELMX_LENGTH_TOO_SHORT : ELMX_OK;
}

std::size_t character_count(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

// Digits before the exponent, without the zeros that lead or, after the point, trail.
elmx_error check_digits(const facets& limits, std::string_view text) {
  if (limits.total_digits == 0 && limits.fraction_digits < 0) return ELMX_OK;
  text = text.substr(0, text.find_first_of("eE"));
  const std::size_t point = text.find('.');
  std::string_view whole = text.substr(0, point);
  std::string_view fraction = point == std::string_view::npos ? std::string_view() : text.substr(point + 1);
  while (!whole.empty() && (!is_digit(whole.front()) || whole.front() == '0')) whole.remove_prefix(1);
  while (!fraction.empty() && fraction.back() == '0') fraction.remove_suffix(1);
  if (limits.total_digits != 0 && whole.size() + fraction.size() > limits.total_digits) {
    return ELMX_TOTAL_DIGITS_EXCEEDED;
  }
  const bool long_fraction =
      limits.fraction_digits >= 0 && fraction.size() > static_cast<std::size_t>(limits.fraction_digits);
  return long_fraction ? ELMX_FRACTION_DIGITS_EXCEEDED : ELMX_OK;
}

template <class T, class Bound>
elmx_error check_bounds(const facets& limits, T value) {
  if (limits.has_max && value > static_cast<Bound>(limits.max)) return ELMX_VALUE_GREATER_THAN_MAX;
  return limits.has_min && value < static_cast<Bound>(limits.min) ? ELMX_VALUE_LESS_THAN_MIN : ELMX_OK;
}

elmx_error check_bounds_of_unsigned(const facets& limits, std::uint64_t value) {
  if (limits.has_max && (limits.max < 0 || value > static_cast<std::uint64_t>(limits.max))) {
    return ELMX_VALUE_GREATER_THAN_MAX;
  }
  const bool low = limits.has_min && limits.min > 0 && value < static_cast<std::uint64_t>(limits.min);
  return low ? ELMX_VALUE_LESS_THAN_MIN : ELMX_OK;
}

template <class T>
elmx_error check_number(const facets& limits, T value) {
  if constexpr (std::is_floating_point_v<T>) {
    return check_bounds<T, double>(limits, value);
  } else if constexpr (std::is_unsigned_v<T>) {
    return check_bounds_of_unsigned(limits, value);
  } else {
    return check_bounds<std::int64_t, std::int64_t>(limits, value);
  }
}

// Comparison that ends at the first difference, as it does for nearly all tokens of an enumeration.
bool is_token(const char* token, std::string_view text) {
  for (const char c : text) {
    if (*token == '\0' || *token++ != c) return false;
  }
  return *token == '\0';
}

elmx_error check_text(const simple_type& type, std::string_view text) {
  if (type.members != nullptr) {
    for (const simple_type* const* member = type.members; *member != nullptr; ++member) {
      const elmx_error code =
          with_kind((*member)->kind, [&](auto value) { return parse_value(**member, text, &value); });
      if (code == ELMX_OK) return ELMX_OK;
    }
    return ELMX_INVALID_VALUE_FORMAT;
  }
  if (type.enumeration != nullptr) {
    const char* const* token = type.enumeration;
    while (*token != nullptr && !is_token(*token, text)) ++token;
    if (*token == nullptr) return ELMX_VALUE_NOT_IN_ENUMERATION;
  }
  if (type.pattern != nullptr && !type.pattern->matches(text)) return ELMX_NO_PATTERN_MATCHED;
  return ELMX_OK;
}

// Sign and digits of any length. What T can't hold is told from what is no integer at all.
template <class T>
elmx_error parse_any_integer(std::string_view text, T& value) {
  const bool minus = !text.empty() && text.front() == '-';
  if (minus || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
  if (text.empty()) return ELMX_INVALID_VALUE_FORMAT;
  const std::uint64_t limit =
      minus ? std::is_signed_v<T> ? static_cast<std::uint64_t>(std::numeric_limits<T>::max()) + 1 : 0
            : static_cast<std::uint64_t>(std::numeric_limits<T>::max());
  std::uint64_t magnitude = 0;
  bool overflow = false;
  for (const char c : text) {
    if (!is_digit(c)) return ELMX_INVALID_VALUE_FORMAT;
    const auto digit = static_cast<std::uint64_t>(c - '0');
    if (magnitude > (std::numeric_limits<std::uint64_t>::max() - digit) / 10) overflow = true;
    if (!overflow) magnitude = magnitude * 10 + digit;
  }
  if (overflow || magnitude > limit) return minus ? ELMX_VALUE_LESS_THAN_MIN : ELMX_VALUE_GREATER_THAN_MAX;
  value = static_cast<T>(minus ? std::uint64_t{0} - magnitude : magnitude);
  return ELMX_OK;
}

// The same, quickest where it has so few digits that T can hold any number of them.
template <class T>
elmx_error parse_integer(std::string_view text, T& value) {
  if (text.empty() || text.size() > static_cast<std::size_t>(std::numeric_limits<T>::digits10)) {
    return parse_any_integer(text, value);
  }
  std::uint64_t magnitude = 0;
  for (const char c : text) {
    if (!is_digit(c)) return parse_any_integer(text, value);
    magnitude = magnitude * 10 + static_cast<std::uint64_t>(c - '0');
  }
  value = static_cast<T>(magnitude);
  return ELMX_OK;
}

elmx_error parse_form(const simple_type&, std::string_view text, bool& value) {
  value = same_name(text, "true") || same_name(text, "1");
  return value || same_name(text, "false") || same_name(text, "0") ? ELMX_OK : ELMX_INVALID_VALUE_FORMAT;
}

template <class T>
requires std::is_integral_v<T> elmx_error parse_form(const simple_type&, std::string_view text, T& value) {
  return parse_integer(text, value);
}

elmx_error parse_form(const simple_type&, std::string_view text, double& value) {
  return parse_double(text, value) ? ELMX_OK : ELMX_INVALID_VALUE_FORMAT;
}

elmx_error parse_form(const simple_type&, std::string_view text, std::string& value) {
  value = text;
  return ELMX_OK;
}

elmx_error parse_form(const simple_type& type, std::string_view text, c_binary& value) {
  const bool good = type.kind == value_kind::hex ? parse_hex(text, value) : parse_base64(text, value);
  return good ? ELMX_OK : ELMX_INVALID_VALUE_FORMAT;
}

elmx_error parse_form(const simple_type&, std::string_view text, c_datetime& value) {
  value.text = text;
  return is_datetime(text) ? ELMX_OK : ELMX_INVALID_VALUE_FORMAT;
}

elmx_error parse_form(const simple_type&, std::string_view text, c_empty&) {
  return text.empty() ? ELMX_OK : ELMX_INVALID_VALUE_FORMAT;
}

template <class T>
elmx_error check_converted(const simple_type& type, const T& value) {
  const facets& limits = limits_of(type);
  if constexpr (std::is_same_v<T, std::string>) {
    return check_length(limits, character_count(value));
  } else if constexpr (std::is_same_v<T, c_binary>) {
    return check_length(limits, value.bytes.size());
  } else if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>) {
    return check_number(limits, value);
  } else {
    return ELMX_OK;
  }
}

template <class T>
void append_typed(std::string& out, const simple_type& type, const T& value) {
  if constexpr (std::is_same_v<T, bool>) {
    append_bool(out, value);
  } else if constexpr (std::is_same_v<T, double>) {
    append_number(out, value);
  } else if constexpr (std::is_unsigned_v<T>) {
    append_number(out, static_cast<std::uint64_t>(value));
  } else if constexpr (std::is_integral_v<T>) {
    append_number(out, static_cast<std::int64_t>(value));
  } else if constexpr (std::is_same_v<T, std::string>) {
    append_escaped(out, value);
  } else if constexpr (std::is_same_v<T, c_datetime>) {
    append_escaped(out, value.text);
  } else if constexpr (std::is_same_v<T, c_binary>) {
    if (type.kind == value_kind::hex) {
      append_hex(out, value);
    } else {
      append_base64(out, value);
    }
  }
}

template <class T>
bool same(const T& left, const T& right) {
  if constexpr (std::is_same_v<T, double>) {
    return left == right ? std::signbit(left) == std::signbit(right) : std::isnan(left) && std::isnan(right);
  } else {
    return left == right;
  }
}

template <class T>
elmx_error parse_typed(const simple_type& type, std::string_view text, T& value) {
  if (type.enumeration != nullptr || type.pattern != nullptr || type.members != nullptr) {
    if (const elmx_error code = check_text(type, text); code != ELMX_OK) return code;
  }
  if (const elmx_error code = parse_form(type, text, value); code != ELMX_OK) return code;
  if (type.limits == nullptr) return ELMX_OK;
  if (const elmx_error code = check_digits(*type.limits, text); code != ELMX_OK) return code;
  return check_converted(type, value);
}

template <class T>
elmx_error push_parsed(const simple_type& type, std::string_view text, list_of<T>& list) {
  T value{};
  const elmx_error code = parse_typed(type, text, value);
  if (code == ELMX_OK) list.push_back(std::move(value));
  return code;
}

}  // namespace

elmx_error parse_value(const simple_type& type, std::string_view text, void* target) {
  return with_kind(type.kind, [&]<class T>(T) { return parse_typed(type, text, *static_cast<T*>(target)); });
}

elmx_error parse_list_item(const simple_type& type, std::string_view text, void* values) {
  return with_kind(type.kind,
                   [&]<class T>(T) { return push_parsed<T>(type, text, *static_cast<list_of<T>*>(values)); });
}

elmx_error parse_list(const simple_type& type, std::string_view text, void* target) {
  return with_kind(type.kind, [&]<class T>(T) {
    auto& list = *static_cast<list_of<T>*>(target);
    list.clear();
    std::size_t begin = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
      if (i < text.size() && !is_space(text[i])) continue;
      if (i > begin) {
        const elmx_error code = push_parsed<T>(type, text.substr(begin, i - begin), list);
        if (code != ELMX_OK) return code;
      }
      begin = i + 1;
    }
    return ELMX_OK;
  });
}

elmx_error check_value(const simple_type& type, const void* value) {
  return with_kind(type.kind, [&]<class T>(T) {
    const T& typed = *static_cast<const T*>(value);
    if constexpr (std::is_same_v<T, std::string>) {
      T scratch;
      return parse_typed(type, typed, scratch);
    } else if constexpr (std::is_same_v<T, c_datetime>) {
      T scratch;
      return parse_typed(type, typed.text, scratch);
    } else {
      std::string text;
      append_typed(text, type, typed);
      if (const elmx_error code = check_text(type, text); code != ELMX_OK) return code;
      if (const elmx_error code = check_digits(limits_of(type), text); code != ELMX_OK) return code;
      return check_converted(type, typed);
    }
  });
}

elmx_error check_list(const simple_type& type, const void* values) {
  return with_kind(type.kind, [&]<class T>(T) {
    for (const auto& item : *static_cast<const list_of<T>*>(values)) {
      const T value = static_cast<T>(item);
      if (const elmx_error code = check_value(type, &value); code != ELMX_OK) return code;
    }
    return ELMX_OK;
  });
}

void append_value(std::string& out, const simple_type& type, const void* value) {
  with_kind(type.kind, [&]<class T>(T) { append_typed(out, type, *static_cast<const T*>(value)); });
}

void append_list_item(std::string& out, const simple_type& type, const void* values, std::size_t index) {
  with_kind(type.kind, [&]<class T>(T) {
    append_typed<T>(out, type, static_cast<T>((*static_cast<const list_of<T>*>(values))[index]));
  });
}

void append_list(std::string& out, const simple_type& type, const void* values) {
  for (std::size_t i = 0; i < list_size(type.kind, values); ++i) {
    if (i > 0) out.push_back(' ');
    append_list_item(out, type, values, i);
  }
}

std::size_t list_size(value_kind kind, const void* values) {
  return with_kind(kind, [&]<class T>(T) { return static_cast<const list_of<T>*>(values)->size(); });
}

bool equal_values(value_kind kind, const void* left, const void* right) {
  return with_kind(kind, [&]<class T>(T) { return same(*static_cast<const T*>(left), *static_cast<const T*>(right)); });
}

bool equal_lists(value_kind kind, const void* left, const void* right) {
  return with_kind(kind, [&]<class T>(T) {
    const auto& a = *static_cast<const list_of<T>*>(left);
    const auto& b = *static_cast<const list_of<T>*>(right);
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) { return same(x, y); });
  });
}

void assign_default(const simple_type& type, const char* text, void* target) {
  with_kind(type.kind, [&]<class T>(T) {
    T value{};
    if (text != nullptr) parse_form(type, text, value);
    *static_cast<T*>(target) = std::move(value);
  });
}

}  // namespace rubrica::lmx
