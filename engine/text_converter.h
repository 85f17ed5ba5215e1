// A book's text conversion between the wide text of the interfaces and narrow text: the encoding of the C library's
// locale, or UTF-8 under UTF-8 mode. Every book owns one; it also carries the list separator that setLocale decides.
#pragma once

#include <string>
#include <string_view>

namespace rubrica {

class TextConverter {
 public:
  // Takes wide text and converts it at once; getWide and getNarrow give the two sides, valid until the next set. In
  // UTF-8 mode malformed UTF-16 throws a std::exception "Invalid UTF-16".
  void setWide(std::u16string_view text);
  void setNarrow(std::string_view text);
  const char16_t* getWide() const { return _wide.c_str(); }
  const char* getNarrow() const { return _narrow.c_str(); }
  // Whether the last conversion met characters that the other side can't hold.
  bool lost() const { return _lost; }

  bool utf8Mode() const { return _utf8Mode; }
  char listSeparator() const { return _listSeparator; }
  // Sets the encoding and the separator by a locale name, see IBookT::setLocale. Throws xlerror "setlocale error (1)"
  // for a null name and "setlocale error (2)" for one that the C library doesn't know.
  void setLocale(const char* name);
  // What a new book does: adopts the environment's locale, whatever it is called.
  void adoptEnvironmentLocale();

 private:
  void setLibraryLocale(const char* name);

  std::u16string _wide;
  std::string _narrow;
  std::string _previousLocale;
  bool _lost = false;
  bool _utf8Mode = false;
  char _listSeparator = ';';
};

inline constexpr char kLostCharactersWarning[] = "warning: some characters have not been converted properly";

}  // namespace rubrica
