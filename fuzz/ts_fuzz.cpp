#include <kr/localization/ts.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace TS = KR::Localization::TS;

// Whatever is read is written to a file that is read again, and written to the same bytes.
// NOLINTNEXTLINE(readability-identifier-naming): the name that libFuzzer calls
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const QByteArray written = TS::translatorTo(TS::translatorFrom(input), false);
    const auto again = TS::translatorFrom(written);
    if (TS::translatorTo(again, false) != written) {
        std::abort();
    }
    return 0;
}
