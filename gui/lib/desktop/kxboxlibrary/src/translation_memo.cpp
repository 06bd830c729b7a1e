#include "translation_memo.hpp"

#include <kr/localization/ts.hpp>

#include <algorithm>
#include <utility>

namespace KX {

using namespace KR::Localization;

QMap<QString, QByteArray> TranslationMemo::write(const QHash<QString, Translator>& translators)
{
    QHash<QString, File> files;
    QMap<QString, QByteArray> bytes;
    for (auto it = translators.cbegin(); it != translators.cend(); ++it) {
        const auto known = m_files.constFind(it.key());
        const bool isAsBefore =
            known != m_files.cend() && known->wasRead && known->translator == it.value();
        const auto file = files.insert(
            it.key(), isAsBefore ? *known : File{TS::translatorTo(it.value(), false), false, {}});
        bytes.insert(it.key(), file->bytes);
    }
    m_files = std::move(files);
    return bytes;
}

Translator TranslationMemo::read(const QByteArray& bytes)
{
    const auto file = std::find_if(m_files.begin(), m_files.end(),
                                   [&bytes](const File& known) { return known.bytes == bytes; });
    if (file == m_files.end()) {
        return TS::translatorFrom(bytes);
    }
    if (!file->wasRead) {
        file->translator = TS::translatorFrom(bytes);
        file->wasRead = true;
    }
    return file->translator;
}

} // namespace KX
