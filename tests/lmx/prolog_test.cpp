#include <gtest/gtest.h>

#include "lmx/c_xml_reader.h"

namespace rubrica::lmx {
namespace {

struct prolog_outcome {
  int token = 0;
  std::string name;
  elmx_error code = ELMX_OK;
  std::string message;
  int fatal = 0;
  int errors = 0;
  int warnings = 0;
};

prolog_outcome first_event(const std::string& document) {
  c_xml_reader_memory reader(document.data(), document.size());
  prolog_outcome result;
  result.token = reader.get_element_event();
  if (result.token == TOKEN_NAME) result.name = reader.name();
  result.code = reader.errors().last_code();
  result.message = reader.errors().last_text();
  result.fatal = reader.errors().fatal_count();
  result.errors = reader.errors().error_count();
  result.warnings = reader.errors().warning_count();
  return result;
}

void expect_fatal(const std::string& document, elmx_error code, const std::string& message) {
  const prolog_outcome result = first_event(document);
  EXPECT_TRUE(result.token == TOKEN_FAILURE) << document;
  EXPECT_EQ(result.code, code) << document;
  EXPECT_EQ(result.message, message) << document;
  EXPECT_EQ(result.fatal, 1) << document;
}

void expect_read(const std::string& document, int errors = 0, int warnings = 0) {
  const prolog_outcome result = first_event(document);
  EXPECT_EQ(result.token, TOKEN_NAME) << document << result.message;
  EXPECT_EQ(result.name, "a") << document;
  EXPECT_EQ(result.errors, errors) << document;
  EXPECT_EQ(result.warnings, warnings) << document;
}

TEST(Prolog, DeclarationsThatAreInOrder) {
  expect_read("<?xml version=\"1.0\"?><a/>");
  expect_read("<?xml version='1.1' encoding='UTF-8' standalone='maybe'?>\n<a/>");
  expect_read("<?xml\tversion = '1.0' standalone = 'yes' ?><a/>");
  expect_read("<!-- first --><?xml version='1.0'?><a/>");
}

TEST(Prolog, OtherInstructionsArePassedOver) {
  expect_read("<?xml-stylesheet href='x'?><?xmlx?><?p ? > ?\?><? ?><a/>");
  expect_read("<?xml?><a/>");
}

TEST(Prolog, ADeclarationWithoutVersionIsAnErrorThatReadingSurvives) {
  expect_read("<?xml encoding='UTF-8'?><a/>", 1);
  expect_read("<?xml ?><a/>", 1);
  EXPECT_EQ(first_event("<?xml encoding='UTF-8'?><a/>").code, ELMX_BAD_XML_DECL);
  EXPECT_EQ(first_event("<?xml encoding='UTF-8'?><a/>").message, "Version not present in XML Decl");
}

TEST(Prolog, AnotherVersionIsAnErrorThatReadingSurvives) {
  expect_read("<?xml version='2.0'?><a/>", 1);
  const prolog_outcome result = first_event("<?xml version='2.0'?><a/>");
  EXPECT_EQ(result.code, ELMX_BAD_XML_VERSION);
  EXPECT_EQ(result.message, "XML version 2.0 not understood");
}

TEST(Prolog, ABrokenDeclarationIsAnErrorThatReadingSurvives) {
  expect_read("<?xml version?><a/>", 1);
  expect_read("<?xml version=1.0?><a/>", 1);
}

TEST(Prolog, ADeclarationAfterContentIsFatal) {
  const std::string document = "<a><?xml version='1.0'?></a>";
  c_xml_reader_memory reader(document.data(), document.size());
  EXPECT_EQ(reader.get_element_event(), TOKEN_NAME);
  EXPECT_EQ(reader.get_element_event(), TOKEN_FAILURE);
  EXPECT_EQ(reader.errors().last_code(), ELMX_BAD_XML_DECL);
  EXPECT_EQ(reader.errors().last_text(), "XML declaration not at start of document");
}

TEST(Prolog, CommentsEndAtTwoDashesOrMore) {
  expect_read("<!----><!-- a -- b - > --><!-- > --><a/>");
  expect_read("<!-- x ---><a/>", 0, 1);
  expect_read("<!-- x -----><a/>", 0, 1);
}

class warning_keeper : public c_error {
 public:
  std::string kept;

 protected:
  void report(severity level, elmx_error code, std::string_view source_id, int line, std::string_view text) override {
    kept += std::to_string(static_cast<int>(level)) + " " + std::to_string(code) + " " + std::string(source_id) + " " +
            std::to_string(line) + " " + std::string(text) + "\n";
  }
};

TEST(Prolog, WarningsAndErrorsAreReportedFatalOnesStored) {
  const std::string document = "<?xml version='3'?>\n<!-- x --->\n<!DOCTYPE a [<!ENTITY e SYSTEM 'f'>]>\n<1>";
  c_read_memory source(document.data(), document.size());
  warning_keeper errors;
  c_get_for_xml layers(source, errors);
  EXPECT_EQ(layers.next_markup(), TOKEN_FAILURE);
  EXPECT_EQ(errors.kept,
            "1 14 memory 1 XML version 3 not understood\n"
            "2 8 memory 2 End of comment not Well-Formed\n"
            "2 17 memory 3 External Entity definitions not supported\n");
  EXPECT_EQ(errors.last_code(), ELMX_NOT_WELL_FORMED);
  EXPECT_EQ(errors.last_severity(), severity::fatal);
  EXPECT_EQ(errors.last_line(), 4);
  EXPECT_EQ(errors.fatal_count(), 1);
  EXPECT_EQ(errors.error_count(), 2);
  EXPECT_EQ(errors.warning_count(), 2);
  errors.add(severity::fatal, ELMX_UNDEFINED, "x", 1, "later");
  EXPECT_EQ(errors.last_code(), ELMX_NOT_WELL_FORMED);
}

TEST(Prolog, NotesAreOnlyCounted) {
  warning_keeper errors;
  errors.add(severity::note, ELMX_UNDEFINED, "x", 1, "note");
  EXPECT_EQ(errors.note_count(), 1);
  EXPECT_EQ(errors.error_count(), 0);
  EXPECT_EQ(errors.kept, "");
}

TEST(DocumentType, IsPassedOver) {
  expect_read("<!DOCTYPE a><a/>");
  expect_read("<!DOCTYPE a SYSTEM 'x.dtd'><a/>");
  expect_read(
      "<!DOCTYPE a [ <!-- c > --> <?p > ?> <!ELEMENT a ANY> <!ATTLIST a x CDATA ''> <!NOTATION n SYSTEM ''> <!-x> "
      "]><a/>");
}

TEST(DocumentType, MayStandOnlyOnceAndBeforeContent) {
  expect_fatal("<!DOCTYPE a><!DOCTYPE a><a/>", ELMX_BAD_DTD, "Document Type Declaration already read");
  const std::string document = "<a><!DOCTYPE a></a>";
  c_xml_reader_memory reader(document.data(), document.size());
  reader.get_element_event();
  EXPECT_EQ(reader.get_element_event(), TOKEN_FAILURE);
  EXPECT_EQ(reader.errors().last_text(), "Document Type Declaration not at start of document");
  EXPECT_EQ(reader.errors().last_code(), ELMX_BAD_DTD);
}

TEST(DocumentType, BrokenSubsetsAreFatal) {
  expect_fatal("<!DOCTYPE a [x]><a/>", ELMX_BAD_DTD, "DTD not Well Formed (got x)");
  expect_fatal("<!DOCTYPE a [<x>]><a/>", ELMX_BAD_DTD, "DTD not Well Formed (got x)");
  expect_fatal("<!DOCTYPE a []x><a/>", ELMX_BAD_DTD, "DTD not Well Formed (expected '>', got x)");
  expect_fatal("<!DOCTYPE a [%p ]><a/>", ELMX_BAD_DTD, "DTD not Well Formed (got  )");
  expect_fatal("<!DOCTYPE a [<!ENTITY 1 'x'>]><a/>", ELMX_BAD_DTD, "DTD not Well Formed (got 1)");
  expect_fatal("<!DOCTYPE a [<!ENTITY e '&#x;'>]><a/>", ELMX_BAD_DTD, "DTD not Well Formed (bad character reference)");
}

TEST(DocumentType, ExternalEntitiesAreAWarningAndNotStored) {
  expect_read("<!DOCTYPE a [<!ENTITY e SYSTEM 'x'><!ENTITY % f PUBLIC 'x' 'y'>]><a/>", 0, 2);
}

TEST(DocumentType, AnotherWordInAnEntityIsFatal) {
  expect_fatal("<!DOCTYPE a [<!ENTITY e NDATA>]><a/>", ELMX_UNEXPECTED_ENTITY,
               "Unexpected value in Entity definition: NDATA");
}

TEST(Prolog, OtherDeclarationsAreNotWellFormed) {
  for (const std::string document :
       {"<!x><a/>", "<!-x--><a/>", "<![CDATX[]]><a/>", "<!DOCTYP a><a/>", "<1/>", "< a/>"}) {
    expect_fatal(document, ELMX_NOT_WELL_FORMED, "XML not Well-Formed");
  }
}

}  // namespace
}  // namespace rubrica::lmx
