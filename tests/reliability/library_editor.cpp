#include "library_editor.hpp"

#include <kx/xml_element.hpp>
#include <kxboxlibrary/box_data.hpp>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <array>
#include <functional>

namespace reliability {

namespace {

using KR::Localization::Message;
using KR::Localization::Translator;
using KX::BoxLibraryNode;

constexpr std::size_t a_fewNodes = 12;
constexpr std::size_t a_manyNodes = 45;
constexpr int a_deepest = 4;

int depthOf(const BoxLibraryNode& node)
{
    return node.parent() == nullptr ? 0 : 1 + depthOf(*node.parent());
}

// Whether `inner` is `outer` or below it.
bool isWithin(const BoxLibraryNode* outer, const BoxLibraryNode* inner)
{
    while (inner != nullptr && inner != outer) {
        inner = inner->parent();
    }
    return inner == outer;
}

void collect(BoxLibraryNode& node, std::vector<BoxLibraryNode*>& nodes)
{
    for (BoxLibraryNode* const child : node.children()) {
        nodes.push_back(child);
        collect(*child, nodes);
    }
}

QString numbered(const char* text, unsigned number)
{
    return QString::fromUtf8(text) + QString::number(number);
}

// Puts a translation into a translator, in the place of the one that it has.
void put(Translator& translator, const QString& context, const QString& source,
         const QString& translation)
{
    Message message(context, source);
    message.setTranslation(translation);
    message.setState(Message::State::Finished);
    auto& messages = translator.messages();
    const auto found = std::find_if(messages.begin(), messages.end(), [&](const Message& other) {
        return other.context() == context && other.source() == source;
    });
    if (found == messages.end()) {
        messages.append(message);
    } else {
        *found = message;
    }
}

QString someLanguage(unsigned number)
{
    static const std::array<const char*, 3> languages{"fr", "de", "pt_BR"};
    return QString::fromLatin1(languages[number % languages.size()]);
}

} // namespace

LibraryEditor::LibraryEditor(KX::BoxLibrary& library, std::mt19937& random)
    : m_library(library), m_random(random)
{
}

void LibraryEditor::edit()
{
    const std::size_t count = nodes().size();
    if (count < a_fewNodes) {
        below(3) == 0 ? makeFolder() : makeBox();
        return;
    }
    if (count > a_manyNodes) {
        remove();
        return;
    }
    static constexpr std::array<void (LibraryEditor::*)(), 16> edits{
        &LibraryEditor::makeFolder,   &LibraryEditor::makeBox,   &LibraryEditor::makeBox,
        &LibraryEditor::copy,         &LibraryEditor::rename,    &LibraryEditor::rename,
        &LibraryEditor::move,         &LibraryEditor::move,      &LibraryEditor::move,
        &LibraryEditor::remove,       &LibraryEditor::reorder,   &LibraryEditor::editData,
        &LibraryEditor::editResource, &LibraryEditor::translate, &LibraryEditor::translate,
        &LibraryEditor::retitle};
    (this->*oneOf(edits))();
}

// Names of which no two differ in upper and lower case alone, and that every system can have once
// they are escaped.
std::string LibraryEditor::name()
{
    static const std::array<const char*, 12> names{
        "Walk",         "Say: hello?", "Gr\u00f6\u00dfe",
        "Left / right", "50%",         "\u65e5\u672c\u8a9e",
        "Ol\u00e9!",    " Wait",       "End.",
        "<a> & \"b\"",  "*",           "Motions"};
    return oneOf(names);
}

QByteArray LibraryEditor::bytes()
{
    QByteArray bytes(static_cast<int>(below(2) == 0 ? below(100) : below(20000)), 0);
    std::generate(bytes.begin(), bytes.end(), [this] { return static_cast<char>(below(256)); });
    return bytes;
}

LibraryEditor::Nodes LibraryEditor::nodes() const
{
    Nodes all;
    collect(*m_library.boxRoot(), all);
    return all;
}

// The root among them.
LibraryEditor::Nodes LibraryEditor::folders() const
{
    Nodes all = nodes();
    all.push_back(m_library.boxRoot());
    all.erase(std::remove_if(all.begin(), all.end(),
                             [](const BoxLibraryNode* node) { return node->boxData() != nullptr; }),
              all.end());
    return all;
}

LibraryEditor::Nodes LibraryEditor::boxes() const
{
    Nodes all = nodes();
    all.erase(std::remove_if(all.begin(), all.end(),
                             [](const BoxLibraryNode* node) { return node->boxData() == nullptr; }),
              all.end());
    return all;
}

void LibraryEditor::makeFolder()
{
    BoxLibraryNode* const folder = oneOf(folders());
    if (depthOf(*folder) < a_deepest) {
        folder->insertChild(static_cast<int>(below(5)), name());
    }
}

void LibraryEditor::makeBox()
{
    pk::project::ProjectModel pictures;
    pictures.writeFile(QStringLiteral("all/icon.png"), bytes());
    pictures.writeFile(QStringLiteral("all/sounds/hello.wav"), bytes());
    const KX::RootBoxDescription description(
        name(), boost::make_shared<KX::XmlElement>("Box"),
        boost::make_shared<KX::BoxResourceList>(
            &pictures, QStringLiteral("all"),
            QStringList{QStringLiteral("icon.png"), QStringLiteral("sounds/hello.wav")}));
    oneOf(folders())->insertChild(static_cast<int>(below(5)), description);
}

// With a message of the copy's own.
void LibraryEditor::copy()
{
    const BoxLibraryNode* const node = oneOf(nodes());
    BoxLibraryNode* const folder = oneOf(folders());
    if (isWithin(node, folder) || depthOf(*folder) >= a_deepest) {
        return;
    }
    BoxLibraryNode* const clone = node->clone();
    const QString language = someLanguage(below(3));
    Translator translator(language);
    put(translator,
        m_library.translationContext() + QLatin1Char('/') +
            QString::fromStdString(BoxLibraryNode::escapeFileName(clone->name())),
        QStringLiteral("Text of a copy"), numbered("Copie ", below(1000)));
    folder->insertChildren(static_cast<int>(below(5)), {clone}, {{language, translator}});
}

void LibraryEditor::rename()
{
    oneOf(nodes())->setName(name());
}

void LibraryEditor::move()
{
    BoxLibraryNode* const node = oneOf(nodes());
    BoxLibraryNode* const folder = oneOf(folders());
    BoxLibraryNode* const oldFolder = node->parent();
    if (folder == oldFolder || isWithin(node, folder) || depthOf(*folder) >= a_deepest) {
        return;
    }
    const QString oldPath = node->path();
    const QString oldContext = node->translationContext();
    folder->appendChild(node->take());
    // What was taken was copied and lies in the old place, too: that becomes the one in the new.
    m_library.projectModel().move(oldPath, node->path(), true);
    oldFolder->saveFolder();
    m_library.changeContextes({{oldContext, node->translationContext()}});
}

void LibraryEditor::remove()
{
    const BoxLibraryNode* const node = oneOf(nodes());
    KX::removeChildTree(*node->parent(), node->index());
}

void LibraryEditor::reorder()
{
    BoxLibraryNode* const folder = oneOf(folders());
    const auto count = static_cast<unsigned>(folder->children().size());
    if (count > 1) {
        const auto from = static_cast<int>(below(count));
        folder->moveChildren(from, from, static_cast<int>(below(count + 1)));
        folder->saveFolder();
        m_library.setDirty(true);
    }
}

void LibraryEditor::editData()
{
    const Nodes all = boxes();
    if (!all.empty()) {
        BoxLibraryNode* const box = oneOf(all);
        QList<QString> bitmaps;
        if (below(2) == 0) {
            bitmaps.append(QStringLiteral("icon.png"));
        }
        box->boxData()->updateData(QString::fromStdString(box->name()),
                                   numbered("Tooltip <\u00e9> & ", below(1000)), bitmaps,
                                   below(2) == 0);
    }
}

void LibraryEditor::editResource()
{
    const Nodes all = boxes();
    if (!all.empty()) {
        const QString path = oneOf(all)->path();
        m_library.projectModel().writeFile(
            path + (below(2) == 0 ? QStringLiteral("/icon.png")
                                  : numbered("/sounds/", below(4)) + QStringLiteral(".wav")),
            bytes());
        m_library.setDirty(true);
    }
}

void LibraryEditor::translate()
{
    auto translators = m_library.translations();
    const QString language = someLanguage(below(3));
    if (below(10) == 0) {
        translators.remove(language);
    } else {
        auto& translator = translators[language];
        translator.setLanguageCode(language);
        put(translator, oneOf(nodes())->translationContext(), numbered("Text ", below(3)),
            numbered("Texte ", below(1000)));
    }
    m_library.setTranslations(translators);
    m_library.setDirty(true);
}

void LibraryEditor::retitle()
{
    m_library.setTitle(numbered("Library ", below(1000)));
}

} // namespace reliability
