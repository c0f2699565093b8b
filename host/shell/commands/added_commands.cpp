#include "shell/commands/added_commands.h"

#include <dlfcn.h>
#include <fmt/format.h>
#include <link.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <utility>
#include <vector>

#include "base/text.h"
#include "base/text_argument.h"
#include "base/tokens.h"
#include "pmsh/commands.h"
#include "shell/commands/show/interface.h"
#include "shell/commands/show/library_display.h"
#include "shell/library/command_library.h"
#include "shell/output/schema/schema.h"

namespace host {
namespace {

constexpr std::size_t kMostCommands = 256;  // of one library
constexpr std::size_t kMostRows = 200;      // of a list of fields or words

// A table that is being read.
struct command_table_reader {
  const loaded_library& library;
  std::string where{};  // "FILE: " or "FILE: 'show interface x': "

  template <typename... Values>
  [[noreturn]] void refuse(fmt::format_string<Values...> what, Values&&... of) const {
    throw library_error(fmt::format("{}{}.", where, fmt::format(what, std::forward<Values>(of)...)));
  }

  // The address of the exported object or function.
  void* find(const char* name) const {
    std::string error;
    void* const found = library.find(name, error);
    if (found == nullptr) refuse("it does not export '{}'", name);
    return found;
  }

  command_handler find_handler(const char* name) const {
    void* const found = find(name);
    const ElfW(Sym)* const symbol = symbol_at(found);
    if (symbol == nullptr || ELF64_ST_TYPE(symbol->st_info) != STT_FUNC) refuse("'{}' is not a function", name);
    return reinterpret_cast<command_handler>(found);
  }

  // The symbol of an exported address; null when there is none.
  static const ElfW(Sym) * symbol_at(const void* address) {
    Dl_info where{};
    const ElfW(Sym)* symbol = nullptr;
    const int found =
        dladdr1(address, &where, reinterpret_cast<void**>(const_cast<ElfW(Sym)**>(&symbol)), RTLD_DL_SYMENT);
    return found == 0 ? nullptr : symbol;
  }
};

// Texts made here, to which the grammar and the schema refer.
std::string_view keep(std::string text) {
  static std::deque<std::string> kept;
  return kept.emplace_back(std::move(text));
}

// ---- The table ----

bool is_zero(const pmsh_command_t& entry) {
  static const pmsh_command_t kZero{};
  return std::memcmp(&entry, &kZero, sizeof entry) == 0;
}

// The commands up to the first entry of zeros, as many as the exported object holds.
std::span<const pmsh_command_t> read_table(const command_table_reader& reader) {
  const auto* const table = static_cast<const pmsh_command_t*>(reader.find("pmsh_commands"));
  const ElfW(Sym)* const symbol = command_table_reader::symbol_at(table);
  if (symbol == nullptr || symbol->st_size < sizeof(pmsh_command_t))
    reader.refuse("'pmsh_commands' is not a table of pmsh_command_t");
  const std::size_t most = symbol->st_size / sizeof(pmsh_command_t);
  std::size_t count = 0;
  while (count < most && !is_zero(table[count])) ++count;
  if (count > kMostCommands) reader.refuse("'pmsh_commands' has {} commands; {} is the most", count, kMostCommands);
  return {table, count};
}

bool is_of(std::string_view text, std::string_view letters) {
  return !text.empty() && text.find_first_not_of(letters) == std::string_view::npos;
}

constexpr std::string_view kWordLetters = "abcdefghijklmnopqrstuvwxyz0123456789-";
constexpr std::string_view kKeyLetters = "abcdefghijklmnopqrstuvwxyz0123456789_";

bool is_printable(std::string_view text) {
  return std::none_of(text.begin(), text.end(), [](char letter) {
    const auto byte = static_cast<unsigned char>(letter);
    return byte < 0x20 || byte == 0x7F;
  });
}

// A required text.
std::string_view read_text(const command_table_reader& reader, const char* text, const char* what) {
  if (text == nullptr || text[0] == '\0') reader.refuse("it has no {}", what);
  if (!is_printable(text)) reader.refuse("its {} has control characters", what);
  return text;
}

// ---- Words ----

void read_words_with_help(const command_table_reader& reader, const pmsh_word_t* words) {
  for (std::size_t i = 0; words != nullptr && words[i].word != nullptr; ++i) {
    if (i == kMostRows) reader.refuse("its list of words has no end");
    const std::string_view help = read_text(reader, words[i].help, "help of a word");
    if (!is_of(words[i].word, kWordLetters))
      reader.refuse("it has help for '{}', which is not a word in lower case", words[i].word);
    if (help_of_word(words[i].word).empty()) add_word(words[i].word, help);
  }
}

bool is_argument(std::string_view word) {
  constexpr std::string_view kOthers[] = {"RANGE", "VLANS"};
  return is_number_argument(word) || std::find(std::begin(kOthers), std::end(kOthers), word) != std::end(kOthers);
}

void check_word(const command_table_reader& reader, std::string_view word) {
  if (word.starts_with('[') != word.ends_with(']')) reader.refuse("'{}' lacks a bracket", word);
  if (word.starts_with('[')) word = word.substr(1, word.size() - 2);
  if (is_argument(word)) return;
  if (!is_of(word, kWordLetters)) reader.refuse("'{}' is neither a word in lower case nor a known argument", word);
  if (help_of_word(word).empty()) reader.refuse("the word '{}' has no help", word);
}

std::string_view read_syntax(const command_table_reader& reader, const pmsh_command_t& entry) {
  const std::string_view words = read_text(reader, entry.words, "words");
  const auto parts = split_words(words);
  if (parts.size() > kMaxSyntaxWords) reader.refuse("it has more than {} words", kMaxSyntaxWords);
  if (parts.empty() || parts.front().text != "show") reader.refuse("it does not begin with 'show'");
  std::vector<std::string_view> texts;
  for (const word_token& part : parts) {
    check_word(reader, part.text);
    texts.push_back(part.text);
  }
  return keep(join(texts, " "));
}

std::ptrdiff_t num_ranges(const command_syntax& syntax) {
  return std::count_if(syntax.words.begin(), syntax.words.begin() + static_cast<std::ptrdiff_t>(syntax.num_words),
                       [](const syntax_word& word) { return word.kind == syntax_kind::range; });
}

// ---- Kinds of interface ----

std::vector<if_index_type_t> read_kinds(const command_table_reader& reader, interface_mask_t kinds) {
  std::vector<if_index_type_t> types;
  interface_mask_t known = 0;
  for (const interface_kind& kind : all_kinds()) {
    known |= kind.mask;
    const bool is_new = std::find(types.begin(), types.end(), kind.type) == types.end();
    if ((kinds & kind.mask) != 0 && is_new) types.push_back(kind.type);
  }
  if ((kinds & ~known) != 0) reader.refuse("its kinds {:#x} are not kinds of interface", kinds & ~known);
  if (types.empty()) reader.refuse("it takes a RANGE, but has no kinds of interface");
  return types;
}

// ---- The structured form ----

struct field_form {
  uint32 type;
  field_type form;
  std::initializer_list<uint8> codes;  // of tuple ids whose values it can show
};

const field_form kForms[] = {
    {PMSH_TEXT, field_type::text, {CMD_TYPE_STRING}},
    {PMSH_NUMBER, field_type::integer, {CMD_TYPE_UINT32, CMD_TYPE_UINT64, CMD_TYPE_ENUM, CMD_TYPE_HEX32}},
    {PMSH_DECIMAL, field_type::decimal, {CMD_TYPE_FLOAT}},
    {PMSH_MAC, field_type::mac, {CMD_TYPE_MAC}},
    {PMSH_IPV4, field_type::ip, {CMD_TYPE_IPV4}},
    {PMSH_INTERFACE, field_type::full_name, {CMD_TYPE_IF_INDEX}},
    {PMSH_VLANS, field_type::vlans, {CMD_TYPE_STRING}},
};

// A title for a key: its words, which begin with a capital letter.
std::string title_of(std::string_view key) {
  constexpr std::pair<std::string_view, std::string_view> kAbbreviations[] = {
      {"id", "ID"}, {"ip", "IP"}, {"mac", "MAC"}, {"mtu", "MTU"}, {"vlan", "VLAN"}, {"vlans", "VLANs"}};
  std::string title;
  while (!key.empty()) {
    const std::string_view word = key.substr(0, key.find('_'));
    key.remove_prefix(std::min(word.size() + 1, key.size()));
    const auto* const known = std::find_if(std::begin(kAbbreviations), std::end(kAbbreviations),
                                           [word](const auto& it) { return it.first == word; });
    title.append(title.empty() ? "" : " ").append(known == std::end(kAbbreviations) ? word : known->second);
  }
  if (!title.empty()) title.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(title.front())));
  return title;
}

added_field read_field(const command_table_reader& reader, const pmsh_field_t& row) {
  const std::string_view key = row.key;
  if (!is_of(key, kKeyLetters)) reader.refuse("the key '{}' is not in lower case with underscores", key);
  const auto* const form = std::find_if(std::begin(kForms), std::end(kForms),
                                        [&row](const field_form& known) { return known.type == row.type; });
  if (form == std::end(kForms)) reader.refuse("the type of the field '{}' is unknown", key);
  const auto code = static_cast<uint8>(row.tuple >> 24);
  if (std::find(form->codes.begin(), form->codes.end(), code) == form->codes.end())
    reader.refuse("the type code of the tuple id of '{}' does not fit its type", key);
  added_field read{row.tuple, {property::none, row.key, form->form}};
  read.described.title = keep(title_of(key));
  if (row.unit != nullptr) read.described.unit = read_text(reader, row.unit, "unit");
  if (row.help != nullptr) read.described.description = read_text(reader, row.help, "help of a field");
  return read;
}

std::vector<added_field> read_fields(const command_table_reader& reader, const pmsh_field_t* rows) {
  std::vector<added_field> fields;
  for (std::size_t i = 0; rows != nullptr && rows[i].key != nullptr; ++i) {
    if (i == kMostRows) reader.refuse("its list of fields has no end");
    fields.push_back(read_field(reader, rows[i]));
    const bool contradicts = std::any_of(fields.begin(), fields.end(), [&](const added_field& other) {
      const field& last = fields.back().described;
      return other.described.name == last.name && other.described.type != last.type;
    });
    if (contradicts) reader.refuse("the field '{}' has two types", fields.back().described.name);
  }
  if (fields.empty()) reader.refuse("its display has no fields");
  return fields;
}

// Members that every document has.
constexpr std::string_view kOfDocuments[] = {"schema_version", "display",  "command",  "time",
                                             "interfaces",     "messages", "exit_code"};

display read_display(const command_table_reader& reader, const pmsh_command_t& entry, bool is_about_interfaces) {
  if (entry.display == nullptr) return kSentences;
  const std::string_view name = entry.display;
  if (!is_of(name, kKeyLetters) || name.starts_with("value_"))
    reader.refuse("the name of its display '{}' is not in lower case with underscores", name);
  if (std::find(std::begin(kOfDocuments), std::end(kOfDocuments), name) != std::end(kOfDocuments))
    reader.refuse("every document has a member '{}'; its display needs another name", name);
  for (const command& other : all_commands())
    if (other.shown.name == name) reader.refuse("the display '{}' exists already", name);
  std::string error;
  const display_bit bit = add_display(read_fields(reader, entry.fields), error);
  if (bit == kNoDisplay) reader.refuse("{}", error);
  if ((entry.flags & PMSH_LIST) != 0) return {bit, {}, name, false, false, name, true};
  return {bit, is_about_interfaces ? std::string_view() : name, name};
}

// ---- Commands ----

// The library of a command and the kinds that it shows, to name it when another library adds the same.
struct owner_of_kinds {
  interface_mask_t kinds;
  bool only_structured;
  std::string file;
};
std::multimap<std::string_view, owner_of_kinds>& owners() {
  static std::multimap<std::string_view, owner_of_kinds> all;
  return all;
}

// Whether both accept a common line, comparing arguments by their names.
bool share_a_line(const command_syntax& one, const command_syntax& other) {
  // [i][j]: the first i words of one and the first j of the other accept a common line.
  bool agree[kMaxSyntaxWords + 1][kMaxSyntaxWords + 1] = {{true}};
  for (std::size_t i = 0; i <= one.num_words; ++i) {
    for (std::size_t j = 0; j <= other.num_words; ++j) {
      if (!agree[i][j]) continue;
      const bool has_one = i < one.num_words, has_other = j < other.num_words;
      if (has_one && one.words[i].is_optional) agree[i + 1][j] = true;
      if (has_other && other.words[j].is_optional) agree[i][j + 1] = true;
      if (has_one && has_other && one.words[i].text == other.words[j].text) agree[i + 1][j + 1] = true;
    }
  }
  return agree[one.num_words][other.num_words];
}

// The command that accepts a line of this syntax, too; null when there is none.
const command* find_rival(const command_syntax& syntax) {
  const auto commands = all_commands();
  const auto found = std::find_if(commands.begin(), commands.end(),
                                  [&syntax](const command& known) { return share_a_line(known.syntax, syntax); });
  return found == commands.end() ? nullptr : &*found;
}

const command* find_command(std::string_view words) {
  const auto commands = all_commands();
  const auto found = std::find_if(commands.begin(), commands.end(),
                                  [words](const command& known) { return known.syntax.text == words; });
  return found == commands.end() ? nullptr : &*found;
}

void replace_kinds(const command_table_reader& reader, const pmsh_command_t& entry, std::string_view words,
                   command_handler handler) {
  const command* const existing = find_command(words);
  if (existing == nullptr) reader.refuse("there is no command with these words to replace");
  if (existing->run != show_interface) reader.refuse("only displays of interfaces can be replaced");
  read_kinds(reader, entry.kinds);
  const bool only_structured = (entry.flags & PMSH_STRUCTURED_ONLY) != 0;
  const auto [first, last] = owners().equal_range(words);
  for (auto other = first; other != last; ++other)
    if ((other->second.kinds & entry.kinds) != 0)
      reader.refuse("some of its kinds are shown by {} already", other->second.file);
  owners().insert({existing->syntax.text, {entry.kinds, only_structured, reader.library.file()}});
  provide_kinds({existing->view, entry.kinds, only_structured, handler});
}

int show_added(const invocation& run) {
  if (const int checked = check_module(run); checked != kDone) return checked;
  return run_display(run, [&run](paraminfo_t* block) { call_handler(run, run.line.what->view->own.handler, block); });
}

void add_new_command(const command_table_reader& reader, const pmsh_command_t& entry, std::string_view words,
                     command_handler handler) {
  const command_syntax syntax(words);
  if (const command* const rival = find_rival(syntax); rival != nullptr) {
    const auto other = owners().find(rival->syntax.text);
    reader.refuse("there is such a command already, of {}", other == owners().end() ? "the shell" : other->second.file);
  }
  const bool is_about_interfaces = num_ranges(syntax) != 0;
  if (is_about_interfaces && (entry.flags & PMSH_LIST) != 0) reader.refuse("PMSH_LIST is for commands without RANGE");
  if (num_ranges(syntax) > 1) reader.refuse("it takes more than one RANGE");
  if (!is_about_interfaces && (entry.kinds != 0 || entry.header != nullptr))
    reader.refuse("it has kinds or a header, but takes no RANGE");
  const added_handlers handlers{
      handler,
      entry.header == nullptr ? nullptr : reader.find_handler(entry.header),
      entry.command_id,
      (entry.flags & PMSH_NO_SUB_INTERFACES) == 0,
  };
  auto kinds = is_about_interfaces ? read_kinds(reader, entry.kinds) : std::vector<if_index_type_t>();
  command added{syntax, read_text(reader, entry.help, "help"), is_about_interfaces ? show_interface : show_added};
  added.shown = read_display(reader, entry, is_about_interfaces);
  added.view = add_view(std::move(kinds), handlers);
  add_command(added);
  owners().insert({words, {entry.kinds, false, reader.library.file()}});
}

void add_entry(command_table_reader& reader, const pmsh_command_t& entry) {
  read_words_with_help(reader, entry.word_helps);
  const std::string_view words = read_syntax(reader, entry);
  constexpr uint32 kKnownFlags = PMSH_REPLACES | PMSH_STRUCTURED_ONLY | PMSH_LIST | PMSH_NO_SUB_INTERFACES;
  if ((entry.flags & ~kKnownFlags) != 0) reader.refuse("its flags are unknown");
  const command_handler handler = reader.find_handler(read_text(reader, entry.handler, "handler").data());
  name_added_handler(handler, fmt::format("{} of {}", entry.handler, reader.library.file()));
  const bool has_list = (entry.flags & PMSH_LIST) != 0;
  if (has_list && (entry.flags != PMSH_LIST || entry.display == nullptr))
    reader.refuse("PMSH_LIST needs a display and excludes other flags");
  if ((entry.flags & PMSH_NO_SUB_INTERFACES) != 0 && ((entry.flags & PMSH_REPLACES) != 0 || entry.kinds == 0))
    reader.refuse("PMSH_NO_SUB_INTERFACES is for new commands with RANGE");
  if ((entry.flags & PMSH_REPLACES) != 0)
    replace_kinds(reader, entry, words, handler);
  else if ((entry.flags & PMSH_STRUCTURED_ONLY) != 0)
    reader.refuse("PMSH_STRUCTURED_ONLY needs PMSH_REPLACES");
  else
    add_new_command(reader, entry, words, handler);
}

void read_library(const std::string& file) {
  std::error_code none;
  if (std::filesystem::exists(file, none) && !std::filesystem::is_regular_file(file, none))
    throw library_error(fmt::format("{}: it is not a file.", file));
  // The loader searches its own directories for a name without a slash.
  const std::string path = file.find('/') == std::string::npos ? "./" + file : file;
  static std::deque<loaded_library> libraries;
  const loaded_library& library = libraries.emplace_back(path, loaded_library::binding::at_once);
  command_table_reader reader{library};
  reader.where = file + ": ";
  std::size_t number = 0;
  for (const pmsh_command_t& entry : read_table(reader)) {
    ++number;
    const bool has_words = entry.words != nullptr && is_printable(entry.words);
    reader.where = has_words ? fmt::format("{}: '{}': ", file, entry.words)
                             : fmt::format("{}: command {} of its table: ", file, number);
    add_entry(reader, entry);
  }
}

}  // namespace

void add_commands_of(const std::string& file) {
  try {
    read_library(file);
  } catch (const library_error& error) {
    throw added_library_error(error.what());
  }
}

void add_commands_in(const std::string& directory) {
  std::set<std::string> files;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(directory, error))
    if (entry.path().extension() == ".so") files.insert(entry.path().string());
  for (const std::string& file : files) add_commands_of(file);
}

command_library load_libraries(const std::filesystem::path& directory, const std::vector<std::string>& named) {
  const command_library library = load_command_library(directory / "libpmcli_common.so");
  add_commands_in(directory / "pmsh");
  for (const std::string& file : named) add_commands_of(file);
  return library;
}

}  // namespace host
