#pragma once

#include "messages.hpp"

#include <kr/localization/translator.hpp>
#include <kxboxlibrary/box_library.hpp>

#include <QMap>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace kxbox {

/// What there is to translate of a box: its translatableTexts(), under the context of its messages.
struct BoxTexts
{
    QString context;
    QStringList texts;
};

/// How many messages an update changed.
struct UpdateCounts
{
    int added = 0;    ///< of new texts
    int vanished = 0; ///< their text or box is gone
    int restored = 0; ///< their text is back
    int removed = 0;  ///< gone as well, but there was no translation to keep

    bool isEmpty() const { return added + vanished + restored + removed == 0; }
    /// "12 added, 3 vanished": those that are not 0.
    std::string text() const;
};

/// The texts of all boxes of a library, that translators are brought up to date with.
class Catalogue
{
public:
    /// Refers to the library.
    explicit Catalogue(KX::BoxLibrary& library);
    /// Whether nobody knows what texts a context has that is none of a box, as when the box can't
    /// be read.
    using IsUnknown = std::function<bool(const QString& context)>;
    /// `prefix` is what the contexts of all boxes, those that are gone too, begin with; `boxes` are
    /// in the order of the tree, no two with the same context.
    Catalogue(QString prefix, std::vector<BoxTexts> boxes, IsUnknown isUnknown = {});

    /// Gives every text a message, and marks the messages of texts that are gone.
    ///
    /// A new text gets an unfinished message without a translation, behind those of its box; new
    /// boxes come at the end. The message of a text that is gone becomes vanished, or is removed
    /// when it has no translation. One whose text is back is finished again if it is vanished, and
    /// unfinished if it is obsolete or has no translation. All others, messages in contexts without
    /// the prefix or with unknown texts, and those without a source (comments on a context), stay
    /// as they are.
    UpdateCounts update(KR::Localization::Translator& translator) const;

private:
    class Update;

    QString m_prefix;
    std::vector<BoxTexts> m_boxes;
    QMap<QString, std::size_t> m_boxByContext; // its place in m_boxes
    std::set<TextKey> m_texts;
    IsUnknown m_isUnknown;
};

} // namespace kxbox
