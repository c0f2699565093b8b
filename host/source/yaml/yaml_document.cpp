#include "source/yaml/yaml_document.h"

#include <fmt/format.h>
#include <yaml.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <new>
#include <utility>

#include "source/yaml/yaml_file_error.h"

namespace host {
namespace {

constexpr std::size_t kMaxFileBytes = 64 * 1024 * 1024;
constexpr std::size_t kMaxDepth = 64;
constexpr uint64 kMaxNodes = 1'000'000;

uint32 line_of(const yaml_mark_t& mark) { return static_cast<uint32>(mark.line + 1); }

std::string_view view_of(const yaml_char_t* text) { return reinterpret_cast<const char*>(text); }

bool is_null(std::string_view plain) {
  constexpr std::string_view kNull[] = {"", "~", "null", "Null", "NULL"};
  return std::find(std::begin(kNull), std::end(kNull), plain) != std::end(kNull);
}

// The events of a text.
class event_reader {
 public:
  event_reader(std::string_view content, const std::string& path) : content_(content), path_(path) {
    if (yaml_parser_initialize(&parser_) == 0) throw std::bad_alloc();
    yaml_parser_set_input_string(&parser_, reinterpret_cast<const unsigned char*>(content.data()), content.size());
  }
  ~event_reader() {
    yaml_event_delete(&event_);
    yaml_parser_delete(&parser_);
  }
  event_reader(const event_reader&) = delete;
  event_reader& operator=(const event_reader&) = delete;

  // The next event, until the one after it.
  const yaml_event_t& next() {
    yaml_event_delete(&event_);
    if (yaml_parser_parse(&parser_, &event_) == 0) fail();
    return event_;
  }

 private:
  [[noreturn]] void fail() const {
    if (parser_.error == YAML_MEMORY_ERROR) throw std::bad_alloc();
    const std::string reason = fmt::format("not YAML: {}", parser_.problem);
    if (parser_.error != YAML_READER_ERROR) fail_at(path_, line_of(parser_.problem_mark), reason);
    const std::string_view before = content_.substr(0, parser_.problem_offset);
    fail_at(path_, static_cast<uint32>(std::count(before.begin(), before.end(), '\n') + 1), reason);
  }

  std::string_view content_;
  const std::string& path_;
  yaml_parser_t parser_{};
  yaml_event_t event_{};
};

// Makes the nodes of one document.
class tree_builder {
 public:
  tree_builder(event_reader& events, std::deque<yaml_node>& nodes, const std::string& path)
      : events_(events), nodes_(nodes), path_(path) {}

  // Reads the events of the document, whose start was read, to its end.
  const yaml_node* build() {
    for (;;) {
      const yaml_event_t& event = events_.next();
      switch (event.type) {
        case YAML_DOCUMENT_END_EVENT: return root_;
        case YAML_SCALAR_EVENT: add_scalar(event); break;
        case YAML_ALIAS_EVENT: add_alias(event); break;
        case YAML_SEQUENCE_START_EVENT: open(event, yaml_node::type::list, event.data.sequence_start.anchor); break;
        case YAML_MAPPING_START_EVENT: open(event, yaml_node::type::map, event.data.mapping_start.anchor); break;
        default: close(); break;  // the end of a list or a map
      }
    }
  }

 private:
  struct anchored_node {
    const yaml_node* node;  // null while it is open
    uint64 num_nodes;       // of it and all below it
  };
  struct open_node {
    yaml_node* node;
    const yaml_node* key;  // of a map: of the entry that lacks its value
    std::string anchor;    // empty: none
    uint64 num_before;     // nodes of the document
  };

  yaml_node& make(const yaml_event_t& event, yaml_node::type what) {
    count(1, event);
    return nodes_.emplace_back(yaml_node{.what = what, .line = line_of(event.start_mark)});
  }

  void count(uint64 added, const yaml_event_t& event) {
    num_nodes_ += added;
    if (num_nodes_ > kMaxNodes)
      fail_at(path_, line_of(event.start_mark), fmt::format("more than {} values", kMaxNodes));
  }

  void add_scalar(const yaml_event_t& event) {
    const auto& scalar = event.data.scalar;
    const std::string_view text(reinterpret_cast<const char*>(scalar.value), scalar.length);
    const bool is_plain = scalar.style == YAML_PLAIN_SCALAR_STYLE && scalar.tag == nullptr;
    yaml_node& made = make(event, is_plain && is_null(text) ? yaml_node::type::nothing : yaml_node::type::scalar);
    made.text = text;
    if (scalar.anchor != nullptr) anchors_[std::string(view_of(scalar.anchor))] = {&made, 1};
    place(&made);
  }

  void add_alias(const yaml_event_t& event) {
    const std::string name(view_of(event.data.alias.anchor));
    const auto found = anchors_.find(name);
    if (found == anchors_.end())
      fail_at(path_, line_of(event.start_mark), fmt::format("not YAML: no anchor '{}'", name));
    if (found->second.node == nullptr)
      fail_at(path_, line_of(event.start_mark), fmt::format("alias '{}' is part of its own anchor", name));
    count(found->second.num_nodes, event);
    place(found->second.node);
  }

  void open(const yaml_event_t& event, yaml_node::type what, const yaml_char_t* anchor) {
    if (open_.size() == kMaxDepth)
      fail_at(path_, line_of(event.start_mark), fmt::format("lists and maps are nested more than {} deep", kMaxDepth));
    const uint64 num_before = num_nodes_;
    yaml_node& made = make(event, what);
    std::string name(anchor != nullptr ? view_of(anchor) : std::string_view());
    if (!name.empty()) anchors_[name] = {nullptr, 0};
    open_.push_back({&made, nullptr, std::move(name), num_before});
  }

  void close() {
    const open_node closed = std::move(open_.back());
    open_.pop_back();
    if (!closed.anchor.empty()) anchors_[closed.anchor] = {closed.node, num_nodes_ - closed.num_before};
    place(closed.node);
  }

  // Puts a whole node where it belongs.
  void place(const yaml_node* node) {
    if (open_.empty()) {
      root_ = node;
      return;
    }
    open_node& in = open_.back();
    if (in.node->what == yaml_node::type::list)
      in.node->items.push_back(node);
    else if (in.key == nullptr)
      in.key = node;
    else
      in.node->entries.push_back({std::exchange(in.key, nullptr), node});
  }

  event_reader& events_;
  std::deque<yaml_node>& nodes_;
  const std::string& path_;
  std::vector<open_node> open_;
  std::map<std::string, anchored_node> anchors_;
  uint64 num_nodes_ = 0;  // those below aliases once for each
  const yaml_node* root_ = nullptr;
};

// The line of the first value of a document whose start was read.
uint32 first_line(event_reader& events) { return line_of(events.next().start_mark); }

}  // namespace

void fail_at(const std::string& path, uint32 line, const std::string& reason) {
  throw yaml_file_error(fmt::format("{}:{}: {}", path, line, reason));
}

const yaml_node* yaml_node::find(std::string_view key) const {
  const auto found = std::find_if(entries.begin(), entries.end(), [key](const yaml_entry& it) {
    return it.key->what == type::scalar && it.key->text == key;
  });
  return found == entries.end() ? nullptr : found->value;
}

yaml_document::yaml_document(std::string_view content, const std::string& path) {
  event_reader events(content, path);
  const auto begins_document = [&] { return events.next().type == YAML_DOCUMENT_START_EVENT; };
  events.next();  // the start of the stream
  if (begins_document()) root_ = tree_builder(events, nodes_, path).build();
  if (root_ == nullptr || root_->what == yaml_node::type::nothing)
    throw yaml_file_error(fmt::format("{}: the file is empty", path));
  if (begins_document()) fail_at(path, first_line(events), "a second document");
}

yaml_document load_yaml_file(const std::string& path) {
  const auto fail = [&path](int error) { throw yaml_file_error(fmt::format("{}: {}", path, std::strerror(error))); };
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "re"), std::fclose);
  if (!file) fail(errno);
  std::string content;
  char block[16384];
  while (const std::size_t size = std::fread(block, 1, sizeof block, file.get())) {
    if (content.size() + size > kMaxFileBytes) fail(EFBIG);
    content.append(block, size);
  }
  if (std::ferror(file.get()) != 0) fail(errno);
  return yaml_document(content, path);
}

}  // namespace host
