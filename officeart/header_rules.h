// The OfficeArt record types that have a class, each with what its header must be: the one table from which the record
// classes take their base. recVer 0xF is a container; a recLen of 0 stands for a variable length.
#pragma once

#include <cstdint>

namespace rubrica::officeart {

// The 8 bytes that every OfficeArt record begins with.
struct RecordHeader {
  std::uint16_t recVer = 0, recInstance = 0;  // 4 and 12 bits of the first word
  std::uint16_t recType = 0;
  std::uint32_t recLen = 0;  // bytes behind the header
};
inline constexpr std::uint32_t kHeaderSize = 8;

// Which fields of a header a read compares with its rule.
namespace check {
inline constexpr unsigned recVer = 1, recType = 2, recInstance = 4, recLen = 8;
}

struct HeaderRule {
  std::uint16_t recType = 0;
  unsigned mask = 0;
  std::uint16_t recVer = 0, recInstance = 0;
  std::uint32_t recLen = 0;
  const char* message = "";  // of the failed read
};

namespace type {
inline constexpr std::uint16_t dggContainer = 0xF000, bStoreContainer = 0xF001, dgContainer = 0xF002,
                               spgrContainer = 0xF003, spContainer = 0xF004, solverContainer = 0xF005,
                               fdggBlock = 0xF006, fbse = 0xF007, fdg = 0xF008, fspgr = 0xF009, fsp = 0xF00A,
                               fopt = 0xF00B, clientTextbox = 0xF00D, childAnchor = 0xF00F, clientAnchorSheet = 0xF010,
                               clientData = 0xF011, connectorRule = 0xF012, arcRule = 0xF014, calloutRule = 0xF017,
                               blipEmf = 0xF01A, blipWmf = 0xF01B, blipPict = 0xF01C, blipJpeg = 0xF01D,
                               blipPng = 0xF01E, blipDib = 0xF01F, blipTiff = 0xF020, fritContainer = 0xF118,
                               fdgsl = 0xF119, colorMruContainer = 0xF11A, fpspl = 0xF11D, splitMenuColors = 0xF11E,
                               secondaryFopt = 0xF121, tertiaryFopt = 0xF122;
}

inline constexpr HeaderRule kHeaderRules[] = {
    {type::dggContainer, 7, 0xF, 0, 0, "error in record OfficeArtDggContainer"},
    {type::bStoreContainer, 0, 0xF, 0, 0, "OfficeArtBStoreContainer: file is corrupt"},
    {type::dgContainer, 6, 0xF, 0, 0, "OfficeArtDgContainer: file is corrupt"},
    {type::spgrContainer, 7, 0xF, 0, 0, "error in record OfficeArtSpgrContainer"},
    {type::spContainer, 7, 0xF, 0, 0, "error in record OfficeArtSpContainer"},
    {type::solverContainer, 3, 0xF, 0, 0, "error in record OfficeArtSolverContainer"},
    {type::fdggBlock, 7, 0, 0, 0, "error in record OfficeArtFDGGBlock"},
    {type::fbse, 3, 2, 0, 0, "error in record OfficeArtFBSE"},
    {type::fdg, 0xB, 0, 0, 8, "error in record OfficeArtFDG"},
    {type::fspgr, 0xF, 1, 0, 16, "error in record OfficeArtFSPGR"},
    {type::fsp, 0xB, 2, 0, 8, "error in record OfficeArtFSP"},
    {type::fopt, 3, 3, 0, 0, "error in record OfficeArtFOPT"},
    {type::clientTextbox, 0xF, 0, 0, 0, "error in record OfficeArtClientTextbox"},
    {type::childAnchor, 0xF, 0, 0, 16, "error in record OfficeArtChildAnchor"},
    {type::clientAnchorSheet, 0xF, 0, 0, 18, "error in record OfficeArtClientAnchorSheet"},
    {type::clientData, 0xF, 0, 0, 0, "error in record OfficeArtClientData"},
    {type::connectorRule, 0xF, 1, 0, 24, "error in record OfficeArtFConnectorRule"},
    {type::arcRule, 0xF, 0, 0, 8, "error in record OfficeArtFArcRule"},
    {type::calloutRule, 0xF, 0, 0, 8, "error in record OfficeArtFCalloutRule"},
    {type::blipEmf, 3, 0, 0, 0, "error in record OfficeArtBlipEMF"},
    {type::blipWmf, 3, 0, 0, 0, "error in record OfficeArtBlipWMF"},
    {type::blipPict, 3, 0, 0, 0, "error in record OfficeArtBlipPICT"},
    {type::blipJpeg, 3, 0, 0, 0, "error in record OfficeArtBlipJPEG"},
    {type::blipPng, 3, 0, 0, 0, "error in record OfficeArtBlipPNG"},
    {type::blipDib, 3, 0, 0, 0, "error in record OfficeArtBlipDIB"},
    {type::blipTiff, 3, 0, 0, 0, "error in record OfficeArtBlipDIB"},
    {type::fritContainer, 3, 0, 0, 0, "error in record OfficeArtFRITContainer"},
    {type::fdgsl, 7, 0, 0, 0, "error in record OfficeArtFDGSL"},
    {type::colorMruContainer, 3, 0, 0, 0, "error in record OfficeArtColorMRUContainer"},
    {type::fpspl, 0xF, 0, 0, 4, "error in record OfficeArtFPSPL"},
    {type::splitMenuColors, 0xF, 0, 4, 16, "error in record OfficeArtSplitMenuColorContainer"},
    {type::secondaryFopt, 3, 3, 0, 0, "error in record OfficeArtFOPT"},
    {type::tertiaryFopt, 3, 3, 0, 0, "error in record OfficeArtFOPT"}};

constexpr const HeaderRule& ruleOf(std::uint16_t recType) {
  for (const HeaderRule& rule : kHeaderRules) {
    if (rule.recType == recType) return rule;
  }
  throw "a record class without a header rule";
}

}  // namespace rubrica::officeart
