// The text of metrics, in the two formats that Prometheus reads.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace host {

enum class exposition_format : uint8 { openmetrics, prometheus };

// The value of the Content-Type header of a format.
std::string_view content_type_of(exposition_format format);

// The format for a client with this Accept header.
exposition_format format_accepted(std::string_view accept);

enum class metric_type : uint8 { counter, gauge, histogram, info };

// Samples of one name.
struct metric_family {
  std::string name;  // without the suffix of the type, with the unit
  metric_type type = metric_type::gauge;
  std::string unit;  // the last words of the name; empty: it has none
  std::string help;
};

// Appends `name="value"` to a list of labels. Bytes of the value that are no printable UTF-8 are written visibly.
void append_label(std::string& labels, std::string_view name, std::string_view value);

// Appends families and their samples to a text. Lists of labels are those of append_label(), without braces.
class exposition {
 public:
  exposition(exposition_format format, std::string& to) : format_(format), to_(to) {}

  // Begins a family: all of its samples follow, before another one begins. A family without samples is not written.
  void begin(const metric_family& family);

  // A sample of a counter, a gauge or an info, with the labels of both lists.
  void number(std::string_view labels, uint64 value, std::string_view more_labels = {});

  // The same: `value` / 10^digits; at most 18 digits.
  void decimal(std::string_view labels, int64_t value, uint32 digits, std::string_view more_labels = {});

  // The same: a number that is a text already.
  void text(std::string_view labels, std::string_view value, std::string_view more_labels = {});

  // A sample of a histogram: `suffix` is "_bucket", "_count" or "_sum".
  void part(std::string_view suffix, std::string_view labels, std::string_view value,
            std::string_view more_labels = {});

  // Ends the text.
  void finish();

 private:
  void write_head();

  exposition_format format_;
  std::string& to_;
  const metric_family* begun_ = nullptr;
  bool has_head_ = false;
  std::string sample_name_;
};

// The digits of `value` / 10^digits, without zeros at the end. They are written to `buffer`.
struct decimal_buffer {
  char bytes[40];
};
std::string_view decimal_text(int64_t value, uint32 digits, decimal_buffer& buffer);

}  // namespace host
