// Whole documents: the text, memory and file forms of root classes.
#include <filesystem>
#include <fstream>

#include "lmx/c_xml_reader.h"
#include "lmx/c_xml_writer.h"
#include "lmx/driver.h"

namespace rubrica::lmx {

namespace {

std::string_view local_part(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

const char* source_of(const root_descriptor& root) {
  return root.type->module != nullptr && root.type->module->source != nullptr ? root.type->module->source : "";
}

elmx_error keep_record(elmx_error code, const c_xml& from, c_error_record* out) {
  if (out == nullptr) return code;
  *out = from.record();
  out->code = code;
  return code;
}

}  // namespace

elmx_error unmarshal_root(object& self, const root_descriptor& root, c_xml_reader& reader) {
  reader.set_program_file(source_of(root));
  reader.set_program_line(root.type->line);
  if (root.type->module != nullptr) reader.add_namespace_mapping(root.type->module->namespaces);
  const int event = reader.get_element_event();
  if (event == TOKEN_END_OF_INPUT || event == TOKEN_FAILURE) return reader.report_end(ELMX_UNEXPECTED_END, root.name);
  if (event != TOKEN_NAME || reader.namespace_id(true) != root.namespace_id ||
      reader.local_name() != local_part(root.name)) {
    // Without its root there is nothing that a document could go on with.
    const elmx_error answer = reader.report(ELMX_ELEMENT_NOT_FOUND, root.name);
    return answer == ELMX_OK ? ELMX_ELEMENT_NOT_FOUND : answer;
  }
  return unmarshal(self, reader, root.name);
}

elmx_error unmarshal_root(object& self, const root_descriptor& root, const char* data, std::size_t size,
                          c_error_record* out) {
  c_xml_reader_memory reader(data, size);
  return keep_record(unmarshal_root(self, root, reader), reader, out);
}

elmx_error unmarshal_root_file(object& self, const root_descriptor& root, const char* path, c_error_record* out) {
  c_xml_reader_file reader{std::string_view(path)};
  if (!reader.is_open()) {
    reader.set_program_file(source_of(root));
    reader.report(ELMX_UNABLE_TO_OPEN_FILE, path);
    return keep_record(ELMX_UNABLE_TO_OPEN_FILE, reader, out);
  }
  return keep_record(unmarshal_root(self, root, reader), reader, out);
}

elmx_error marshal_root(const object& self, const root_descriptor& root, c_xml_writer& writer) {
  writer.set_program_file(source_of(root));
  if (root.type->module != nullptr) writer.set_namespaces(root.type->module->namespaces);
  return marshal(self, writer, root.name);
}

elmx_error marshal_root(const object& self, const root_descriptor& root, std::string& text, c_error_record* out) {
  std::string written;
  if (text.empty()) written.swap(text);  // with the room that it may have been given
  c_xml_writer writer(written);
  const elmx_error code = marshal_root(self, root, writer);
  if (code == ELMX_OK) text = std::move(written);
  return keep_record(code, writer, out);
}

elmx_error marshal_root_file(const object& self, const root_descriptor& root, const char* path, c_error_record* out) {
  const std::filesystem::path native(std::u8string(path, path + std::char_traits<char>::length(path)));
  std::ofstream file(native, std::ios::binary | std::ios::trunc);
  elmx_error code = ELMX_OK;
  {
    c_xml_writer writer(file);
    writer.set_program_file(source_of(root));
    code = file.is_open() ? marshal_root(self, root, writer) : writer.report_error(ELMX_UNABLE_TO_OPEN_FILE, path);
    writer.flush();
    if (file.is_open()) {
      file.close();
      if (code == ELMX_OK && file.fail()) code = writer.report_error(ELMX_UNDEFINED, path);
    }
    keep_record(code, writer, out);
  }
  std::error_code ignored;
  if (code != ELMX_OK && std::filesystem::is_regular_file(native, ignored)) std::filesystem::remove(native, ignored);
  return code;
}

}  // namespace rubrica::lmx
