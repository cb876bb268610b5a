// What fmt's shared library defines, for the tool in one file: distributions have no static form of it. Only what the tool
// uses is here; the linker names what is missing.

#include <fmt/format-inl.h>

FMT_BEGIN_NAMESPACE
namespace detail {

template thousands_sep_result<char> thousands_sep_impl<char>(locale_ref);
template char decimal_point_impl<char>(locale_ref);
template dragonbox::decimal_fp<float> dragonbox::to_decimal<float>(float) noexcept;
template dragonbox::decimal_fp<double> dragonbox::to_decimal<double>(double) noexcept;

}  // namespace detail
FMT_END_NAMESPACE
