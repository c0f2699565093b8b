#include "daemon/metrics/exposition.h"

#include <charconv>
#include <cstring>

#include "base/printable.h"

namespace host {
namespace {

std::string_view word_of(metric_type type, exposition_format format) {
  switch (type) {
    case metric_type::counter: return "counter";
    case metric_type::gauge: return "gauge";
    case metric_type::histogram: return "histogram";
    case metric_type::info: return format == exposition_format::openmetrics ? "info" : "gauge";
  }
  return {};
}

std::string_view suffix_of(metric_type type) {
  switch (type) {
    case metric_type::counter: return "_total";
    case metric_type::info: return "_info";
    default: return {};
  }
}

// Only OpenMetrics escapes quotes in texts that are not quoted.
void append_escaped(std::string& to, std::string_view text, bool has_quotes) {
  for (const char each : text) {
    if (each == '\\' || (each == '"' && has_quotes)) to += '\\';
    to += each;
  }
}

}  // namespace

std::string_view content_type_of(exposition_format format) {
  return format == exposition_format::openmetrics ? "application/openmetrics-text; version=1.0.0; charset=utf-8"
                                                  : "text/plain; version=0.0.4; charset=utf-8";
}

exposition_format format_accepted(std::string_view accept) {
  return accept.find("application/openmetrics-text") != std::string_view::npos ? exposition_format::openmetrics
                                                                               : exposition_format::prometheus;
}

void append_label(std::string& labels, std::string_view name, std::string_view value) {
  std::string shown;
  append_printable(shown, value);
  if (!labels.empty()) labels += ',';
  labels.append(name).append("=\"");
  append_escaped(labels, shown, true);
  labels += '"';
}

void exposition::begin(const metric_family& family) {
  begun_ = &family;
  has_head_ = false;
  sample_name_.assign(family.name).append(suffix_of(family.type));
}

// OpenMetrics names a family without the suffix of its samples.
void exposition::write_head() {
  has_head_ = true;
  const bool is_openmetrics = format_ == exposition_format::openmetrics;
  const std::string_view name = is_openmetrics ? begun_->name : sample_name_;
  to_.append("# HELP ").append(name).append(" ");
  append_escaped(to_, begun_->help, is_openmetrics);
  to_.append("\n# TYPE ").append(name).append(" ").append(word_of(begun_->type, format_)).append("\n");
  if (is_openmetrics && !begun_->unit.empty())
    to_.append("# UNIT ").append(name).append(" ").append(begun_->unit).append("\n");
}

void exposition::number(std::string_view labels, uint64 value, std::string_view more_labels) {
  char digits[20];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  text(labels, {digits, static_cast<std::size_t>(end - digits)}, more_labels);
}

void exposition::decimal(std::string_view labels, int64_t value, uint32 digits, std::string_view more_labels) {
  decimal_buffer buffer;
  text(labels, decimal_text(value, digits, buffer), more_labels);
}

void exposition::text(std::string_view labels, std::string_view value, std::string_view more_labels) {
  part({}, labels, value, more_labels);
}

void exposition::part(std::string_view suffix, std::string_view labels, std::string_view value,
                      std::string_view more_labels) {
  if (!has_head_) write_head();
  to_.append(sample_name_).append(suffix).append("{").append(labels);
  if (!more_labels.empty()) to_.append(labels.empty() ? "" : ",").append(more_labels);
  to_.append("} ").append(value).append("\n");
}

void exposition::finish() {
  if (format_ == exposition_format::openmetrics) to_.append("# EOF\n");
}

std::string_view decimal_text(int64_t value, uint32 digits, decimal_buffer& buffer) {
  const bool is_negative = value < 0;
  const uint64 magnitude = is_negative ? 0 - static_cast<uint64>(value) : static_cast<uint64>(value);
  uint64 scale = 1;
  for (uint32 i = 0; i < digits; ++i) scale *= 10;

  char* at = buffer.bytes;
  char* const end = buffer.bytes + sizeof buffer.bytes;
  if (is_negative) *at++ = '-';
  at = std::to_chars(at, end, magnitude / scale).ptr;
  uint64 rest = magnitude % scale;
  if (rest != 0) *at++ = '.';
  for (; rest != 0; rest %= scale) {
    scale /= 10;
    *at++ = static_cast<char>('0' + rest / scale);
  }
  return {buffer.bytes, static_cast<std::size_t>(at - buffer.bytes)};
}

}  // namespace host
