// The text of metrics.
#include "daemon/metrics/exposition.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "daemon/metrics/request_times.h"
#include "service/services.h"

namespace host {
namespace {

using enum exposition_format;

const metric_family kBytes = {"x_bytes", metric_type::counter, "bytes", "Bytes of \"x\\y\""};
const metric_family kLevel = {"x_level", metric_type::gauge, {}, "Level"};
const metric_family kBuild = {"x_build", metric_type::info, {}, "Build"};

std::string text_in(exposition_format format, const std::function<void(exposition&)>& write) {
  std::string text;
  exposition to(format, text);
  write(to);
  to.finish();
  return text;
}

void write_three_families(exposition& to) {
  to.begin(kBytes);
  to.number(R"(a="1")", 5);
  to.number(R"(a="2")", UINT64_MAX, R"(b="3")");
  to.begin(kLevel);
  to.decimal({}, -125, 2, R"(b="3")");
  to.begin(kBuild);
  to.number(R"(v="1")", 1);
}

TEST(Exposition, OfOpenMetricsNamesFamiliesWithoutTheirSuffix) {
  EXPECT_EQ(text_in(openmetrics, write_three_families),
            "# HELP x_bytes Bytes of \\\"x\\\\y\\\"\n"
            "# TYPE x_bytes counter\n"
            "# UNIT x_bytes bytes\n"
            "x_bytes_total{a=\"1\"} 5\n"
            "x_bytes_total{a=\"2\",b=\"3\"} 18446744073709551615\n"
            "# HELP x_level Level\n"
            "# TYPE x_level gauge\n"
            "x_level{b=\"3\"} -1.25\n"
            "# HELP x_build Build\n"
            "# TYPE x_build info\n"
            "x_build_info{v=\"1\"} 1\n"
            "# EOF\n");
}

TEST(Exposition, OfPrometheusNamesFamiliesAsTheirSamples) {
  EXPECT_EQ(text_in(prometheus, write_three_families),
            "# HELP x_bytes_total Bytes of \"x\\\\y\"\n"
            "# TYPE x_bytes_total counter\n"
            "x_bytes_total{a=\"1\"} 5\n"
            "x_bytes_total{a=\"2\",b=\"3\"} 18446744073709551615\n"
            "# HELP x_level Level\n"
            "# TYPE x_level gauge\n"
            "x_level{b=\"3\"} -1.25\n"
            "# HELP x_build_info Build\n"
            "# TYPE x_build_info gauge\n"
            "x_build_info{v=\"1\"} 1\n");
}

TEST(Exposition, LeavesOutAFamilyWithoutSamples) {
  EXPECT_EQ(text_in(openmetrics, [](exposition& to) { to.begin(kBytes); }), "# EOF\n");
}

TEST(Exposition, EscapesLabels) {
  std::string labels;
  append_label(labels, "a", "plain");
  append_label(labels, "b", "quote\" back\\slash");
  append_label(labels, "c", "line\nend \xff");
  append_label(labels, "d", "Zürich");
  EXPECT_EQ(labels, R"(a="plain",b="quote\" back\\slash",c="line\\x0aend \\xff",d="Zürich")");
}

TEST(Exposition, WritesDecimalsWithoutZerosAtTheirEnd) {
  const auto text = [](int64_t value, uint32 digits) {
    decimal_buffer buffer;
    return std::string(decimal_text(value, digits, buffer));
  };
  EXPECT_EQ(text(0, 3), "0");
  EXPECT_EQ(text(34'000, 3), "34");
  EXPECT_EQ(text(34'050, 3), "34.05");
  EXPECT_EQ(text(-1, 3), "-0.001");
  EXPECT_EQ(text(6'600, 6), "0.0066");
  EXPECT_EQ(text(INT64_MIN, 18), "-9.223372036854775808");
  EXPECT_EQ(text(7, 0), "7");
}

TEST(Exposition, HasTheFormatThatIsAccepted) {
  EXPECT_EQ(format_accepted(""), prometheus);
  EXPECT_EQ(format_accepted("text/plain;version=0.0.4;q=0.5,*/*;q=0.1"), prometheus);
  EXPECT_EQ(format_accepted("application/openmetrics-text;version=1.0.0,text/plain;q=0.3"), openmetrics);
  EXPECT_EQ(content_type_of(openmetrics), "application/openmetrics-text; version=1.0.0; charset=utf-8");
  EXPECT_EQ(content_type_of(prometheus), "text/plain; version=0.0.4; charset=utf-8");
}

TEST(RequestTimes, AreCountedUpToEachBound) {
  using std::chrono::microseconds;
  request_times times;
  const service& first = all_services().front();
  times.note(first, microseconds(100));
  times.note(first, microseconds(101));
  times.note(first, std::chrono::seconds(2));

  const std::string text = text_in(openmetrics, [&](exposition& to) { times.write(R"(switch="lab")", to); });

  EXPECT_TRUE(text.starts_with(
      "# HELP pmshd_request_duration_seconds Time that a service took to answer a request of a shell\n"
      "# TYPE pmshd_request_duration_seconds histogram\n"
      "# UNIT pmshd_request_duration_seconds seconds\n"
      "pmshd_request_duration_seconds_bucket{switch=\"lab\",service=\"port-manager\",le=\"1e-05\"} 0\n"
      "pmshd_request_duration_seconds_bucket{switch=\"lab\",service=\"port-manager\",le=\"0.0001\"} 1\n"
      "pmshd_request_duration_seconds_bucket{switch=\"lab\",service=\"port-manager\",le=\"0.001\"} 2\n"
      "pmshd_request_duration_seconds_bucket{switch=\"lab\",service=\"port-manager\",le=\"0.01\"} 2\n"
      "pmshd_request_duration_seconds_bucket{switch=\"lab\",service=\"port-manager\",le=\"0.1\"} 2\n"
      "pmshd_request_duration_seconds_bucket{switch=\"lab\",service=\"port-manager\",le=\"1.0\"} 2\n"
      "pmshd_request_duration_seconds_bucket{switch=\"lab\",service=\"port-manager\",le=\"+Inf\"} 3\n"
      "pmshd_request_duration_seconds_count{switch=\"lab\",service=\"port-manager\"} 3\n"
      "pmshd_request_duration_seconds_sum{switch=\"lab\",service=\"port-manager\"} 2.000201\n"
      "pmshd_request_duration_seconds_bucket{switch=\"lab\",service=\"interface-manager\",le=\"1e-05\"} 0\n"))
      << text;
}

}  // namespace
}  // namespace host
