#include "catalogue.hpp"

#include "box_reader.hpp"
#include "box_texts.hpp"
#include "open_library.hpp"

#include <algorithm>
#include <set>
#include <utility>

namespace kxbox {

using KR::Localization::Message;
using KR::Localization::Translator;

namespace {

std::vector<BoxTexts> textsOf(KX::BoxLibrary& library)
{
    std::vector<BoxTexts> boxes;
    for (const KX::BoxLibraryNode* const node : OpenLibrary::subtree(*library.boxRoot())) {
        if (const auto data = node->boxData()) {
            boxes.push_back({node->translationContext(), translatableTexts(*data)});
        }
    }
    return boxes;
}

/// Whether there is a file for the box of a context, in the project or left out of it.
Catalogue::IsUnknown hasFileOfNoBox(const KX::BoxLibrary& library)
{
    const auto& model = library.projectModel();
    const int prefix = library.translationContext().size() + 1;
    return [&model, prefix](const QString& context) {
        const QString path = context.mid(prefix);
        return isBoxLeftOut(model, path) || model.hasFile(path + QStringLiteral("/box.bhx")) ||
               model.hasFile(path + QStringLiteral("/behavior.bhx"));
    };
}

/// Whether a file keeps the message when its text is gone: not without a first form, or with one
/// of empty variants only.
bool isWorthKeeping(const Message& message)
{
    constexpr ushort a_variantSeparator = 0x9c;
    const QString& form = message.translation();
    return std::any_of(form.begin(), form.end(),
                       [](QChar character) { return character.unicode() != a_variantSeparator; });
}

} // namespace

std::string UpdateCounts::text() const
{
    std::string text;
    const auto add = [&text](int count, const char* what) {
        if (count > 0) {
            text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + what;
        }
    };
    add(added, "added");
    add(vanished, "vanished");
    add(restored, "restored");
    add(removed, "removed");
    return text;
}

Catalogue::Catalogue(KX::BoxLibrary& library)
    : Catalogue(library.translationContext(), textsOf(library), hasFileOfNoBox(library))
{
}

Catalogue::Catalogue(QString prefix, std::vector<BoxTexts> boxes, IsUnknown isUnknown)
    : m_prefix(std::move(prefix)), m_boxes(std::move(boxes)), m_isUnknown(std::move(isUnknown))
{
    for (std::size_t i = 0; i < m_boxes.size(); ++i) {
        const BoxTexts& box = m_boxes[i];
        m_boxByContext.insert(box.context, i);
        for (const QString& text : box.texts) {
            m_texts.insert({box.context, text});
        }
    }
}

/// One update of one translator's messages: what they are, and what they become.
class Catalogue::Update
{
public:
    Update(const Catalogue& catalogue, const QList<Message>& messages);

    const QList<Message>& messages() const { return m_messages; }
    const UpdateCounts& counts() const { return m_counts; }

private:
    void lookAt(const QList<Message>& messages);
    void put(Message message);
    bool isUnknown(const QString& context);
    void putGone(Message message);
    void putNew(const BoxTexts& box);

    const Catalogue& m_catalogue;
    std::set<TextKey> m_known;        // the texts that have messages
    QMap<QString, int> m_lastMessage; // its position, by context
    QMap<QString, bool> m_unknown;    // by context, as far as asked
    QList<Message> m_messages;
    UpdateCounts m_counts;
};

Catalogue::Update::Update(const Catalogue& catalogue, const QList<Message>& messages)
    : m_catalogue(catalogue)
{
    lookAt(messages);
    m_messages.reserve(messages.size());
    for (int i = 0; i < messages.size(); ++i) {
        const QString& context = messages.at(i).context();
        put(messages.at(i));
        const auto box = catalogue.m_boxByContext.constFind(context);
        if (box != catalogue.m_boxByContext.constEnd() && m_lastMessage.value(context) == i) {
            putNew(catalogue.m_boxes[*box]);
        }
    }
    for (const BoxTexts& box : catalogue.m_boxes) {
        if (!m_lastMessage.contains(box.context)) {
            putNew(box);
        }
    }
}

void Catalogue::Update::lookAt(const QList<Message>& messages)
{
    for (int i = 0; i < messages.size(); ++i) {
        m_lastMessage[messages.at(i).context()] = i;
        m_known.insert(keyOf(messages.at(i)));
    }
}

void Catalogue::Update::put(Message message)
{
    if (!message.context().startsWith(m_catalogue.m_prefix) || message.source().isEmpty() ||
        isUnknown(message.context())) {
        m_messages.append(message);
        return;
    }
    if (m_catalogue.m_texts.count(keyOf(message)) == 0) {
        putGone(std::move(message));
        return;
    }
    if (isGone(message)) {
        const bool isFinished =
            message.state() == Message::State::Vanished && message.isTranslated();
        message.setState(isFinished ? Message::State::Finished : Message::State::Unfinished);
        ++m_counts.restored;
    }
    m_messages.append(message);
}

bool Catalogue::Update::isUnknown(const QString& context)
{
    if (!m_catalogue.m_isUnknown || m_catalogue.m_boxByContext.contains(context)) {
        return false;
    }
    const auto known = m_unknown.constFind(context);
    return known != m_unknown.constEnd()
               ? *known
               : *m_unknown.insert(context, m_catalogue.m_isUnknown(context));
}

void Catalogue::Update::putGone(Message message)
{
    if (!isWorthKeeping(message)) {
        ++m_counts.removed;
        return;
    }
    if (!isGone(message)) {
        message.setState(Message::State::Vanished);
        ++m_counts.vanished;
    }
    m_messages.append(message);
}

void Catalogue::Update::putNew(const BoxTexts& box)
{
    for (const QString& text : box.texts) {
        if (m_known.count({box.context, text}) == 0) {
            m_messages.append(Message(box.context, text));
            ++m_counts.added;
        }
    }
}

UpdateCounts Catalogue::update(Translator& translator) const
{
    const Update update(*this, std::as_const(translator).messages());
    if (!update.counts().isEmpty()) {
        translator.messages() = update.messages();
    }
    return update.counts();
}

} // namespace kxbox
