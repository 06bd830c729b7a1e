#include "ts_reader.hpp"
#include "ts_writer.hpp"
#include "xml_source.hpp"

#include <kr/localization/ts.hpp>
#include <pk/log.hpp>

#include <string>

namespace KR::Localization::TS {

namespace {

void warn(const char* reason)
{
    pk::log::log(pk::log::Warning, "krlocalization",
                 std::string("Could not read translation file, ") + reason, __FILE__,
                 "translatorFrom", __LINE__);
}

} // namespace

Translator translatorFrom(const QByteArray& bytes)
{
    try {
        return readTs(bytes);
    } catch (const DamagedFile& damage) {
        warn(damage.what());
    }
    return {};
}

QByteArray translatorTo(const Translator& translator, bool withoutObsolete)
{
    return writeTs(translator, withoutObsolete);
}

} // namespace KR::Localization::TS
