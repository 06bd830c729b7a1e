#include "translation_memo.hpp"

#include <kr/localization/ts.hpp>

#include <algorithm>
#include <utility>

namespace KX {

using namespace KR::Localization;

QMap<QString, QByteArray> TranslationMemo::write(const QHash<QString, Translator>& translators)
{
    QMap<QString, File> files;
    QMap<QString, QByteArray> bytes;
    for (auto it = translators.cbegin(); it != translators.cend(); ++it) {
        const auto known = m_files.constFind(it.key());
        const bool isKnown = known != m_files.cend() && known->wasRead;
        File file;
        if (isKnown && known->translator == it.value()) {
            file = *known;
        } else {
            file.bytes = TS::translatorTo(it.value(), false);
            file.wasRead = isKnown && TS::isReadBack(file.bytes, it.value(), known->translator);
            file.translator = file.wasRead ? it.value() : Translator();
        }
        bytes.insert(it.key(), file.bytes);
        files.insert(it.key(), file);
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
