#pragma once

#include <kr/localization/translator.hpp>

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QString>

namespace KX {

/// Makes and reads translation files, as KR::Localization::TS does, and remembers of each language
/// what was made last and what it was read as. Most edits of a library concern few languages or
/// none, and yet all files are written and read: with this, a language that is as before costs a
/// comparison, and one in which only contexts have other names is not read. The price is the bytes
/// of each file in memory.
class TranslationMemo
{
public:
    /// The files of a set of translators, all there are from now on.
    QMap<QString, QByteArray>
    write(const QHash<QString, KR::Localization::Translator>& translators);

    /// What a file says.
    KR::Localization::Translator read(const QByteArray& bytes);

private:
    struct File
    {
        QByteArray bytes;
        bool wasRead = false;                    // or it is known what reading would give
        KR::Localization::Translator translator; // that; written it gives `bytes` again
    };
    QMap<QString, File> m_files; // by language
};

} // namespace KX
