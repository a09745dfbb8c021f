// Calls as rows of text and of comma-separated values.

#include "operands.hpp"

namespace explorer {
namespace {

std::string csv_cell(const std::string& text) {
  if (text.find_first_of(",\"\n") == std::string::npos) return text;
  std::string cell = "\"";
  for (const char c : text) cell += c == '"' ? "\"\"" : std::string(1, c);
  return cell + '"';
}

std::string csv_line(std::vector<std::string> cells) {
  for (std::string& cell : cells) cell = csv_cell(cell);
  return joined(cells, ",");
}

/// The names of what a call shows, in order.
std::vector<std::string> result_names(const entry& e) {
  std::vector<std::string> names;
  if (e.result != 'v') names.push_back("result");
  for (std::size_t i = 0; i < e.codes.size(); ++i)
    if (is_written(e, e.codes[i])) names.push_back(written_name(e, i));
  return names;
}

}  // namespace

std::string text_row(const entry& e, const evaluation& call, columns shown) {
  std::string row = e.name + ('(' + joined(call.words, "; ")) + ')';
  const bool only_result = call.results.size() == 1 && call.results[0].name == "result";
  for (const evaluation::shown_value& value : call.results) {
    if (!shown.decimal && !shown.bits) break;
    row += only_result ? " =" : "  " + value.name + " =";
    if (shown.decimal) row += ' ' + value.decimal;
    if (shown.bits) row += (shown.decimal ? "  " : " ") + value.bits;
  }
  if (shown.in_register)
    row += "  register " + (call.register_image.empty() ? "-" : call.register_image);
  if (shown.flags) row += "  flags " + call.flags;
  return row;
}

std::string csv_head(const entry& e, columns shown, const std::vector<std::string>& more) {
  std::vector<std::string> cells;
  const std::vector<std::string> names = names_of(e);
  for (std::size_t i = 0; i < e.codes.size(); ++i)
    if (is_given(e, e.codes[i]))
      cells.push_back(e.codes[i] == 'A' ? names[i] + "_length" : names[i]);
  for (const std::string& name : result_names(e)) {
    if (shown.decimal) cells.push_back(name);
    if (shown.bits) cells.push_back(name + "_bits");
  }
  if (shown.in_register) cells.push_back("register");
  if (shown.flags) cells.push_back("flags");
  cells.insert(cells.end(), more.begin(), more.end());
  return csv_line(cells);
}

std::string csv_row(const evaluation& call, columns shown, const std::vector<std::string>& more) {
  std::vector<std::string> cells = call.words;
  for (const evaluation::shown_value& value : call.results) {
    if (shown.decimal) cells.push_back(value.decimal);
    if (shown.bits) cells.push_back(value.bits);
  }
  if (shown.in_register) cells.push_back(call.register_image);
  if (shown.flags) cells.push_back(call.flags);
  cells.insert(cells.end(), more.begin(), more.end());
  return csv_line(cells);
}

}  // namespace explorer
