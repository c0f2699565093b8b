// What the headers of {fmt} declare, compiled once: Debian has no archive of the library, and programs start without
// another shared one.
#include <fmt/format-inl.h>

FMT_BEGIN_NAMESPACE
namespace detail {

template FMT_API dragonbox::decimal_fp<float> dragonbox::to_decimal(float) noexcept;
template FMT_API dragonbox::decimal_fp<double> dragonbox::to_decimal(double) noexcept;

template FMT_API locale_ref::locale_ref(const std::locale&);
template FMT_API std::locale locale_ref::get<std::locale>() const;

template FMT_API thousands_sep_result<char> thousands_sep_impl(locale_ref);
template FMT_API char decimal_point_impl(locale_ref);

template FMT_API void buffer<char>::append(const char*, const char*);
template FMT_API void vformat_to(buffer<char>&, string_view, basic_format_args<FMT_BUFFER_CONTEXT(char)>, locale_ref);

}  // namespace detail
FMT_END_NAMESPACE
