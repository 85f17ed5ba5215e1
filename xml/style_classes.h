// The binding classes of the styles part by flavour, and the one place where they differ: what the left and right side
// of a border are called.
#pragma once

#include "source/ooxml/strict.h"
#include "source/ooxml/styles.h"
#include "xml/flavour.h"

namespace rubrica {

template <class Tag>
struct StyleClasses;

template <>
struct StyleClasses<excelNormal_tag> {
  using Xf = styles::c_CT_Xf;
  using Font = styles::c_CT_Font;
  using Fill = styles::c_CT_Fill;
  using PatternFill = styles::c_CT_PatternFill;
  using Border = styles::c_CT_Border;
  using BorderPr = styles::c_CT_BorderPr;
  using Color = styles::c_CT_Color;

  template <class AnyBorder>
  static auto findLeft(AnyBorder& border) {
    return border.find_left();
  }
  template <class AnyBorder>
  static auto findRight(AnyBorder& border) {
    return border.find_right();
  }
  static BorderPr& left(Border& border) { return border.get_left(); }
  static BorderPr& right(Border& border) { return border.get_right(); }
};

template <>
struct StyleClasses<excelStrict_tag> {
  using Xf = strict::c_CT_Xf;
  using Font = strict::c_CT_Font;
  using Fill = strict::c_CT_Fill;
  using PatternFill = strict::c_CT_PatternFill;
  using Border = strict::c_CT_Border;
  using BorderPr = strict::c_CT_BorderPr;
  using Color = strict::c_CT_Color;

  template <class AnyBorder>
  static auto findLeft(AnyBorder& border) {
    return border.find_start();
  }
  template <class AnyBorder>
  static auto findRight(AnyBorder& border) {
    return border.find_end();
  }
  static BorderPr& left(Border& border) { return border.get_start(); }
  static BorderPr& right(Border& border) { return border.get_end(); }
};

}  // namespace rubrica
