#include "tests/xml/package/zip_builder.h"

#include <algorithm>
#include <stdexcept>

#include "xml/deflater.h"
#include "xml/part_map.h"
#include "xml/zip_reader.h"

namespace rubrica::package_test {
namespace {

void put16(std::string& out, std::uint32_t value) {
  out.push_back(static_cast<char>(value & 0xFF));
  out.push_back(static_cast<char>(value >> 8 & 0xFF));
}

void put32(std::string& out, std::uint32_t value) {
  put16(out, value & 0xFFFF);
  put16(out, value >> 16);
}

constexpr std::uint16_t kUtf8Names = 0x800;

struct Written {
  std::uint32_t offset, compressedSize, size, crc;
  std::uint16_t flags, method;
};

void putFields(std::string& out, const Written& written, std::size_t nameSize) {
  put16(out, 20);  // version needed to extract
  put16(out, written.flags);
  put16(out, written.method);
  put32(out, 0x00210000);  // 1980-01-01
  put32(out, written.crc);
  put32(out, written.compressedSize);
  put32(out, written.size);
  put16(out, static_cast<std::uint32_t>(nameSize));
  put16(out, 0);  // extra field
}

constexpr std::size_t kMostShortEntries = 0xFFFF;

void put64(std::string& out, std::uint64_t value) {
  put32(out, static_cast<std::uint32_t>(value & 0xFFFFFFFF));
  put32(out, static_cast<std::uint32_t>(value >> 32));
}

void putLongEnd(std::string& out, std::uint64_t count, std::uint64_t size, std::uint64_t offset) {
  const std::uint64_t end = out.size();
  put32(out, 0x06064B50);
  put64(out, 44);  // of what follows
  put16(out, 45);  // made by
  put16(out, 45);  // version needed to extract
  put32(out, 0);   // disk
  put32(out, 0);   // disk of the directory
  put64(out, count);
  put64(out, count);
  put64(out, size);
  put64(out, offset);
  put32(out, 0x07064B50);
  put32(out, 0);  // disk of the record
  put64(out, end);
  put32(out, 1);  // disks
}

std::string deflated(Deflater& deflater, const std::string& content) {
  std::ostream(&deflater) << content;
  std::string stream;
  for (const ByteBlock& piece : deflater.finish().pieces) stream += piece.view();
  return stream;
}

}  // namespace

std::string zipOf(const std::vector<TestEntry>& entries) {
  std::string out;
  std::vector<Written> all;
  Deflater deflater;
  for (const TestEntry& entry : entries) {
    const std::string bytes = entry.isDeflated ? deflated(deflater, entry.content) : entry.content;
    Written written{static_cast<std::uint32_t>(out.size()),
                    static_cast<std::uint32_t>(bytes.size()),
                    entry.size.value_or(static_cast<std::uint32_t>(entry.content.size())),
                    entry.crc.value_or(crc32Of(entry.content)),
                    entry.flags.value_or(kUtf8Names),
                    entry.method.value_or(static_cast<std::uint16_t>(entry.isDeflated ? 8 : 0))};
    if (entry.sharesBytesOf) {
      written = all.at(*entry.sharesBytesOf);
    } else {
      put32(out, 0x04034B50);
      putFields(out, written, entry.name.size());
      out.append(entry.name).append(bytes);
    }
    all.push_back(written);
  }
  const auto directory = static_cast<std::uint32_t>(out.size());
  for (std::size_t i = 0; i < entries.size(); ++i) {
    put32(out, 0x02014B50);
    put16(out, 20);  // made by
    putFields(out, all[i], entries[i].name.size());
    put16(out, 0);  // comment
    put16(out, 0);  // disk
    put16(out, 0);  // internal attributes
    put32(out, 0);  // external attributes
    put32(out, all[i].offset);
    out.append(entries[i].name);
  }
  const auto directorySize = static_cast<std::uint32_t>(out.size()) - directory;
  // Where the count finds no room in 16 bits, the longer record has it.
  const bool isLong = entries.size() >= kMostShortEntries;
  if (isLong) putLongEnd(out, entries.size(), directorySize, directory);
  const auto shortCount = static_cast<std::uint32_t>(isLong ? kMostShortEntries : entries.size());
  put32(out, 0x06054B50);
  put32(out, 0);  // disks
  put16(out, shortCount);
  put16(out, shortCount);
  put32(out, directorySize);
  put32(out, directory);
  put16(out, 0);  // comment
  return out;
}

std::vector<std::pair<std::string, std::string>> entriesOf(std::string_view archive) {
  ZipReader reader(bytesOf(archive));
  std::vector<std::pair<std::string, std::string>> entries;
  for (const ZipEntry& entry : reader.entries()) {
    entries.emplace_back(entry.name.substr(1), std::string(reader.read(entry).view()));
  }
  return entries;
}

std::string entryOf(std::string_view archive, std::string_view name) {
  for (auto& [present, content] : entriesOf(archive)) {
    if (present == name) return content;
  }
  return {};
}

template <>
FlavourText flavourText<excelNormal_tag>() {
  return {"http://schemas.openxmlformats.org/spreadsheetml/2006/main",
          "http://schemas.openxmlformats.org/officeDocument/2006/relationships"};
}

template <>
FlavourText flavourText<excelStrict_tag>() {
  return {"http://purl.oclc.org/ooxml/spreadsheetml/main", "http://purl.oclc.org/ooxml/officeDocument/relationships"};
}

template <class Tag>
std::vector<TestEntry> workbookEntries(int sheets) {
  static constexpr const char* kNames[] = {"One", "Two", "Three", "Four", "Five"};
  const FlavourText text = flavourText<Tag>();
  const std::string spreadsheetml = "application/vnd.openxmlformats-officedocument.spreadsheetml.";
  std::string types = R"(<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">)"
                      R"(<Default Extension="rels" )"
                      R"(ContentType="application/vnd.openxmlformats-package.relationships+xml"/>)"
                      R"(<Default Extension="xml" ContentType="application/xml"/>)"
                      R"(<Override PartName="/xl/workbook.xml" ContentType=")" +
                      spreadsheetml + R"(sheet.main+xml"/>)";
  const std::string rels = R"(<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">)";
  std::string workbook = "<workbook xmlns=\"" + text.main + "\" xmlns:r=\"" + text.relationships + "\"><sheets>";
  std::string links = rels;
  std::vector<TestEntry> parts;
  for (int i = 1; i <= sheets; ++i) {
    const std::string number = std::to_string(i);
    types += R"(<Override PartName="/xl/worksheets/sheet)" + number + R"(.xml" ContentType=")" + spreadsheetml +
             R"(worksheet+xml"/>)";
    workbook += "<sheet name=\"" + std::string(kNames[i - 1]) + "\" sheetId=\"" + std::to_string(i + 10) +
                "\" r:id=\"rId" + number + "\"/>";
    links += R"(<Relationship Id="rId)" + number + R"(" Type=")" + text.relationships +
             R"(/worksheet" Target="worksheets/sheet)" + number + R"(.xml"/>)";
    parts.push_back({"xl/worksheets/sheet" + number + ".xml", "<worksheet xmlns=\"" + text.main +
                                                                  "\"><sheetData><row r=\"1\"><c r=\"A1\"><v>" +
                                                                  number + "</v></c></row></sheetData></worksheet>"});
  }
  std::vector<TestEntry> entries;
  entries.push_back({"[Content_Types].xml", types + "</Types>"});
  entries.push_back({"_rels/.rels", rels + R"(<Relationship Id="rId1" Type=")" + text.relationships +
                                        R"(/officeDocument" Target="xl/workbook.xml"/></Relationships>)"});
  entries.push_back({"xl/workbook.xml", workbook + "</sheets></workbook>"});
  entries.push_back({"xl/_rels/workbook.xml.rels", links + "</Relationships>"});
  entries.insert(entries.end(), parts.begin(), parts.end());
  return entries;
}

template std::vector<TestEntry> workbookEntries<excelNormal_tag>(int);
template std::vector<TestEntry> workbookEntries<excelStrict_tag>(int);

std::string replaced(std::string text, std::string_view what, std::string_view with) {
  const std::size_t found = text.find(what);
  if (found == std::string::npos) throw std::logic_error("a test's text lacks " + std::string(what));
  return text.replace(found, what.size(), with);
}

TestEntry& entry(std::vector<TestEntry>& entries, std::string_view name) {
  for (TestEntry& present : entries) {
    if (present.name == name) return present;
  }
  throw std::logic_error("a test's archive lacks " + std::string(name));
}

void addPart(std::vector<TestEntry>& entries, const std::string& name, std::string content, std::string_view type) {
  if (!type.empty()) {
    TestEntry& types = entry(entries, "[Content_Types].xml");
    types.content =
        replaced(types.content, "</Types>",
                 "<Override PartName=\"/" + name + "\" ContentType=\"" + std::string(type) + "\"/></Types>");
  }
  entries.push_back({name, std::move(content)});
}

void addLink(std::vector<TestEntry>& entries, const std::string& partName, std::string_view id, std::string_view type,
             std::string_view target, bool isExternal) {
  const std::string name = makeRelsPath("/" + partName).substr(1);
  const bool isThere = std::any_of(entries.begin(), entries.end(), [&](const TestEntry& e) { return e.name == name; });
  if (!isThere) {
    entries.push_back(
        {name,
         R"(<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships"></Relationships>)"});
  }
  std::string link = "<Relationship Id=\"";
  link.append(id).append("\" Type=\"").append(type).append("\" Target=\"").append(target).append("\"");
  if (isExternal) link.append(" TargetMode=\"External\"");
  TestEntry& links = entry(entries, name);
  links.content = replaced(links.content, "</Relationships>", link + "/></Relationships>");
}

std::vector<std::string> namesOf(std::string_view archive) {
  std::vector<std::string> names;
  for (const auto& [name, content] : entriesOf(archive)) names.push_back(name);
  return names;
}

std::string saveRaw(Book& book) {
  const void* data = nullptr;
  std::size_t size = 0;
  if (!book.saveRaw(&data, &size)) return {};
  return {static_cast<const char*>(data), size};
}

}  // namespace rubrica::package_test
