// Bytes as operations on a library, which is compared with a plain model of it after each of them,
// and with what is read of it again wherever it is saved.
#include "choices.hpp"
#include "require.hpp"
#include "twin.hpp"

#include <kr/localization/context_patchers.hpp>
#include <kr/localization/translators.hpp>
#include <kx/xml_element.hpp>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <array>
#include <exception>

using namespace fuzz;
using KR::Localization::Message;
using Node = KX::BoxLibraryNode;
using Translators = KX::BoxLibrary::Translators;

namespace {

const bool a_prepared = prepare();

constexpr int a_mostOperations = 40;
constexpr int a_mostSaves = 4;
constexpr std::size_t a_mostNodes = 40;

// Names that meet each other, belong to the store or the library, or need escaping.
const std::array<const char*, 24> a_names{"A",
                                          "B",
                                          "A (2)",
                                          "A (3)",
                                          "A ()",
                                          "Say: Hello?",
                                          " x ",
                                          "dot.",
                                          "..",
                                          "",
                                          "100%",
                                          "%41",
                                          "a/b",
                                          "a\\b",
                                          "bxlinfo",
                                          "translations",
                                          ".git",
                                          ".kxproject",
                                          "box.bhx",
                                          "behavior.bhx",
                                          ".metadata",
                                          "\xc3\x9c\xf0\x9f\xa4\x96",
                                          "\xef\xbb\xbf"
                                          "A",
                                          "bell\x07"};
const std::array<const char*, 5> a_texts{"", "text", " <&>\"' ]]>", "tab\tline\nreturn\r",
                                         "\xc3\x9c"};
const std::array<const char*, 5> a_languages{"fr", "de", "pt_BR", "x/y", "sr@latin"};
const std::array<const char*, 4> a_resources{"icon.png", "data/bxlinfo.txt", "data/b.png", "x"};

/// Where a node is in both trees.
struct Place
{
    Node* node;
    Twin* twin;
    Twin* parent; ///< null for the root
};

/// A node without a place in the library.
struct Detached
{
    DetachedNode node;
    std::unique_ptr<Twin> twin;
    Translators messages;
};

class Session
{
public:
    explicit Session(Choices choices);
    void run();

private:
    void operate();
    void check(const char* when);
    void compare(const KX::BoxLibrary& library, const Twin& twin, const char* when);

    void makeFolder();
    void makeBox();
    void rename();
    void edit();
    void move();
    void moveIn();
    void cut();
    void copy();
    void paste();
    void remove();
    void reorder();
    void addMessage();
    void addForeignMessage();
    void writeAll();
    void saveAndRead();

    std::string name();
    QString text() { return q(a_texts.at(m_choices.below(a_texts.size()))); }
    QString language() { return q(a_languages.at(m_choices.below(a_languages.size()))); }
    /// All nodes of the library, the root first.
    std::vector<Place> places();
    Place anyFolder();
    /// Without a node where there is nothing but the root.
    Place anyBelowRoot();
    int anyIndex(const Place& folder);
    bool isFull() const { return m_root.size() >= a_mostNodes; }

    void checkName(const Node& node, const std::string& asked);
    void put(const Place& folder, int index, std::unique_ptr<Twin> twin);
    Translators messagesBelow(const QString& context, const std::string& fileName) const;
    Detached take(const Place& place);
    void insert(const Place& folder, Detached detached);
    void add(const QString& language, const QString& context, const QString& source);
    void dropLeftFiles();

    Choices m_choices;
    TemporaryDirectory m_directory;
    ProjectModel m_donor;
    Library m_library;
    Twin m_root;
    std::multiset<std::string> m_foreign;
    std::vector<Detached> m_clipboard;
    int m_sources = 0;
    int m_saves = 0;
    bool m_mustBeDirty = false;
    std::string m_notes; ///< what was done, for who looks into a failure
};

Session::Session(Choices choices) : m_choices(choices), m_library(new KX::BoxLibrary(q("Demo")))
{
    for (const char* const resource : a_resources) {
        m_donor.writeFile(q(resource), resource);
    }
}

void Session::run()
{
    try {
        for (int i = 0; i < a_mostOperations && !m_choices.isEmpty(); ++i) {
            operate();
            check("after an operation");
        }
        saveAndRead();
    } catch (const std::exception& error) {
        fail("no operation throws", m_notes + error.what());
    }
}

void Session::operate()
{
    using Operation = void (Session::*)();
    static constexpr std::array<Operation, 16> operations{
        &Session::makeFolder, &Session::makeBox,
        &Session::makeBox,    &Session::rename,
        &Session::edit,       &Session::move,
        &Session::cut,        &Session::copy,
        &Session::paste,      &Session::remove,
        &Session::reorder,    &Session::addMessage,
        &Session::moveIn,     &Session::addForeignMessage,
        &Session::writeAll,   &Session::saveAndRead};
    m_mustBeDirty = false;
    (this->*operations.at(m_choices.below(operations.size())))();
}

// What must be true

void Session::check(const char* when)
{
    compare(*m_library, m_root, when);
    if (m_mustBeDirty && !m_library->isDirty()) {
        fail("an edited library is dirty", m_notes);
    }
    for (const Place& place : places()) {
        std::set<std::string> names;
        for (const Node* const child : place.node->children()) {
            if (!names.insert(child->name()).second || child->parent() != place.node) {
                fail("children have names of their own and know their parent", m_notes);
            }
        }
    }
}

void Session::compare(const KX::BoxLibrary& library, const Twin& twin, const char* when)
{
    const auto same = [&](const std::string& found, const std::string& expected, const char* what) {
        if (found != expected) {
            fail(std::string(what) + " are as they must be " + when,
                 m_notes + "found:\n" + found + "expected:\n" + expected);
        }
    };
    auto& root = *const_cast<KX::BoxLibrary&>(library).boxRoot();
    same(textOf(root), textOf(twin), "the nodes");
    same(printed(filesOf(library, twin)), printed(filesOf(twin)), "the files");
    const auto lines = [](const std::multiset<std::string>& texts) {
        std::string all;
        for (const std::string& text : texts) {
            all += text + '\n';
        }
        return all;
    };
    auto expected = messagesOf(twin);
    expected.insert(m_foreign.begin(), m_foreign.end());
    same(lines(messagesOf(library.translations())), lines(expected), "the messages");
}

// Choices

std::string Session::name()
{
    const std::size_t choice = m_choices.below(a_names.size() + 4);
    return choice < a_names.size() ? std::string(a_names.at(choice))
                                   : m_choices.bytes(choice - a_names.size() + 2);
}

std::vector<Place> Session::places()
{
    std::vector<Place> places{{m_library->boxRoot(), &m_root, nullptr}};
    for (std::size_t i = 0; i < places.size(); ++i) {
        for (std::size_t child = 0; child < places[i].twin->children.size(); ++child) {
            places.push_back({places[i].node->child(static_cast<int>(child)),
                              places[i].twin->children[child].get(), places[i].twin});
        }
    }
    return places;
}

Place Session::anyFolder()
{
    std::vector<Place> folders = places();
    folders.erase(std::remove_if(folders.begin(), folders.end(),
                                 [](const Place& place) { return place.twin->isBox; }),
                  folders.end());
    return folders[m_choices.below(folders.size())];
}

Place Session::anyBelowRoot()
{
    const std::vector<Place> all = places();
    return all.size() == 1 ? Place{nullptr, nullptr, nullptr}
                           : all[1 + m_choices.below(all.size() - 1)];
}

/// One too many at either end is clamped.
int Session::anyIndex(const Place& folder)
{
    return static_cast<int>(m_choices.below(folder.twin->children.size() + 3)) - 1;
}

// Steps

void Session::checkName(const Node& node, const std::string& asked)
{
    if (!isNamed(node, asked)) {
        fail("a node has the name that was asked for, but for the number",
             m_notes + "asked for: " + asked + "\nfound: " + node.name());
    }
}

/// Puts a twin where the library put the node of this name.
void Session::put(const Place& folder, int index, std::unique_ptr<Twin> twin)
{
    auto& children = folder.twin->children;
    const int place = std::clamp(index, 0, static_cast<int>(children.size()));
    const Node* const node = folder.node->child(place);
    twin->name = node != nullptr ? node->name() : "<nothing>";
    folder.twin->left.erase(Node::escapeFileName(twin->name));
    children.insert(children.begin() + place, std::move(twin));
    m_mustBeDirty = true;
}

/// The messages at and below a context, as those of a box at the top.
Translators Session::messagesBelow(const QString& context, const std::string& fileName) const
{
    const KR::Localization::ContextRecursiveFinder isBelow(context);
    Translators found = m_library->translations();
    KR::Localization::removeMessages(found, [&](const QString& other) { return !isBelow(other); });
    KR::Localization::ContextMatchPatcher patcher({{context, q("Library:/" + fileName)}});
    KR::Localization::rewriteContexts(found, patcher);
    return found;
}

/// Takes a node out of the tree, with its messages; its files stay.
Detached Session::take(const Place& place)
{
    const QString context = place.node->translationContext();
    Detached detached{nullptr, nullptr, messagesBelow(context, place.node->fileName())};
    place.parent->left.insert(place.node->fileName());
    detached.node.reset(place.node->take());
    m_library->removeTranslations(context);
    auto& siblings = place.parent->children;
    const auto found = std::find_if(siblings.begin(), siblings.end(), [&place](const auto& twin) {
        return twin.get() == place.twin;
    });
    detached.twin = std::move(*found);
    siblings.erase(found);
    return detached;
}

void Session::insert(const Place& folder, Detached detached)
{
    const int index = anyIndex(folder);
    Node* const node = detached.node.release(); // the folder's from now on
    const std::string name = node->name();
    m_library->insertChildren(folder.node, index, {node}, detached.messages);
    put(folder, index, std::move(detached.twin));
    checkName(*node, name);
    m_notes += " into '" + folder.node->path().toStdString() + "' as '" + node->name() + "'\n";
}

void Session::add(const QString& language, const QString& context, const QString& source)
{
    Message message(context, source);
    message.setTranslation(source);
    message.setState(Message::State::Finished);
    Translators translators = m_library->translations();
    translators[language].setLanguageCode(language);
    translators[language].messages().append(message);
    m_library->setTranslations(translators);
    m_notes += "message " + source.toStdString() + " of '" + context.toStdString() + "' in " +
               language.toStdString() + '\n';
}

/// What a program that moves nodes does behind a take().
void Session::dropLeftFiles()
{
    for (const std::string& path : leftPaths(m_root)) {
        m_library->projectModel().remove(q(path));
    }
    for (const Place& place : places()) {
        place.twin->left.clear();
    }
}

// Operations

void Session::makeFolder()
{
    const Place folder = anyFolder();
    const int index = anyIndex(folder);
    const std::string name = this->name();
    m_notes += "folder '" + name + "' in '" + folder.node->path().toStdString() + "'\n";
    const Node* const node = isFull() ? nullptr : folder.node->insertChild(index, name);
    if (node != nullptr) {
        put(folder, index, std::make_unique<Twin>());
        checkName(*node, name);
    }
}

void Session::makeBox()
{
    const Place folder = anyFolder();
    if (isFull()) {
        return;
    }
    const int index = anyIndex(folder);
    const std::string name = this->name();
    m_notes += "box '" + name + "' in '" + folder.node->path().toStdString() + "'\n";
    auto twin = std::make_unique<Twin>();
    twin->isBox = true;
    twin->tooltip = text();
    QStringList files;
    for (std::size_t count = m_choices.below(3); count > 0; --count) {
        const std::string file = a_resources.at(m_choices.below(a_resources.size()));
        twin->resources.insert(file);
        files.append(q(file));
    }
    const auto box = boost::make_shared<KX::XmlElement>("Box");
    box->setAttribute("tooltip", twin->tooltip, false);
    const auto resources = boost::make_shared<KX::BoxResourceList>(&m_donor, QString(), files);
    const Node* const node =
        folder.node->insertChild(index, KX::RootBoxDescription(name, box, resources));
    put(folder, index, std::move(twin));
    checkName(*node, name);
}

void Session::rename()
{
    const Place place = anyBelowRoot();
    if (place.node == nullptr) {
        return;
    }
    const std::string before = place.node->name();
    const std::string name = this->name();
    m_notes += "rename '" + place.node->path().toStdString() + "' to '" + name + "'\n";
    place.node->setName(name);
    place.twin->name = place.node->name();
    if (name != before) {
        checkName(*place.node, name);
        place.parent->left.erase(place.node->fileName());
        m_mustBeDirty = true;
    }
}

void Session::edit()
{
    const Place place = anyBelowRoot();
    if (place.node == nullptr || !place.twin->isBox) {
        return;
    }
    m_notes += "edit '" + place.node->path().toStdString() + "'\n";
    const auto data = place.node->boxData();
    place.twin->tooltip = text();
    data->setTooltip(place.twin->tooltip);
    place.twin->bitmaps.clear();
    for (std::size_t count = m_choices.below(3); count > 0; --count) {
        place.twin->bitmaps.append(q("b") + text());
    }
    data->setBitmaps(place.twin->bitmaps);
    place.twin->expanded = m_choices.yes();
    data->setBitmapExpanded(place.twin->expanded);
}

void Session::move()
{
    const Place place = anyBelowRoot();
    if (place.node == nullptr) {
        return;
    }
    m_notes += "move '" + place.node->path().toStdString() + "'";
    Detached detached = take(place);
    insert(anyFolder(), std::move(detached));
    if (m_choices.yes()) {
        dropLeftFiles();
    }
}

void Session::moveIn()
{
    const Place folder = anyFolder();
    std::vector<Place> moved;
    QList<Node*> nodes;
    std::set<const Twin*> twins;
    bool isAllowed = true;
    for (std::size_t count = m_choices.below(3); count > 0; --count) {
        const Place place = anyBelowRoot();
        if (place.node == nullptr) {
            return;
        }
        for (const Node* above = folder.node; above != nullptr; above = above->parent()) {
            isAllowed = isAllowed && above != place.node;
        }
        isAllowed = twins.insert(place.twin).second && isAllowed;
        moved.push_back(place);
        nodes.append(place.node);
        m_notes += "move '" + place.node->path().toStdString() + "' into '" +
                   folder.node->path().toStdString() + "'\n";
    }
    isAllowed = isAllowed && !nodes.isEmpty();
    const int index = anyIndex(folder);
    if (folder.node->moveIn(index, nodes) != isAllowed) {
        fail("nodes are moved where they make a tree, and nowhere else", m_notes);
    }
    if (!isAllowed) {
        return;
    }
    auto& children = folder.twin->children;
    auto next = children.begin() + std::clamp(index, 0, static_cast<int>(children.size()));
    next = std::find_if(next, children.end(),
                        [&](const auto& twin) { return twins.count(twin.get()) == 0; });
    const Twin* const behind = next != children.end() ? next->get() : nullptr;
    const auto placeOf = [](Twin::Children& among, const Twin* wanted) {
        return std::find_if(among.begin(), among.end(),
                            [wanted](const auto& twin) { return twin.get() == wanted; });
    };
    for (const Place& place : moved) {
        const auto found = placeOf(place.parent->children, place.twin);
        std::unique_ptr<Twin> twin = std::move(*found);
        place.parent->children.erase(found);
        if (place.parent != folder.twin) {
            checkName(*place.node, twin->name);
            twin->name = place.node->name();
            folder.twin->left.erase(place.node->fileName());
        }
        children.insert(placeOf(children, behind), std::move(twin));
    }
    m_mustBeDirty = true;
}

void Session::cut()
{
    const Place place = anyBelowRoot();
    if (place.node != nullptr) {
        m_notes += "cut '" + place.node->path().toStdString() + "'\n";
        m_clipboard.push_back(take(place));
    }
}

void Session::copy()
{
    const Place place = anyBelowRoot();
    if (place.node == nullptr) {
        return;
    }
    m_notes += "copy '" + place.node->path().toStdString() + "'\n";
    writeAll(); // the copy's folders are read from files, which do not know of a reorder yet
    Detached copy{DetachedNode(place.node->clone()), place.twin->clone(), {}};
    copy.twin->name = copy.node->name();
    for (const auto& child : copy.twin->children) {
        child->sortAsLoaded(); // as the copied files have it
    }
    if (copy.node->name().empty()) { // no message can be brought in for it
        copy.twin->dropMessages();
    } else {
        copy.messages = messagesBelow(place.node->translationContext(), copy.node->fileName());
    }
    m_clipboard.push_back(std::move(copy));
}

void Session::paste()
{
    if (m_clipboard.empty()) {
        return;
    }
    Detached detached = std::move(m_clipboard.back());
    m_clipboard.pop_back();
    if (m_root.size() + detached.twin->size() <= a_mostNodes) {
        m_notes += "paste";
        insert(anyFolder(), std::move(detached));
    }
}

void Session::remove()
{
    const Place place = anyBelowRoot();
    if (place.node == nullptr) {
        return;
    }
    m_notes += "remove '" + place.node->path().toStdString() + "'\n";
    const int index = place.node->index();
    KX::removeChildTree(*place.node->parent(), index);
    place.parent->children.erase(place.parent->children.begin() + index);
    m_mustBeDirty = true;
}

void Session::reorder()
{
    const Place folder = anyFolder();
    auto& children = folder.twin->children;
    const auto count = static_cast<int>(children.size());
    const int first = anyIndex(folder);
    const int last = anyIndex(folder);
    const int destination = anyIndex(folder);
    m_notes += "reorder '" + folder.node->path().toStdString() + "'\n";
    folder.node->moveChildren(first, last, destination);
    if (first < 0 || last < first || last >= count || destination < 0 || destination > count ||
        (destination > first && destination <= last)) {
        return;
    }
    Twin::Children run;
    for (int i = first; i <= last; ++i) {
        run.push_back(std::move(children[static_cast<std::size_t>(i)]));
    }
    children.erase(children.begin() + first, children.begin() + last + 1);
    const int place = destination > last ? destination - (last - first + 1) : destination;
    children.insert(children.begin() + place, std::make_move_iterator(run.begin()),
                    std::make_move_iterator(run.end()));
}

void Session::addMessage()
{
    const Place place = anyBelowRoot();
    if (place.node != nullptr) {
        const QString source = q("text " + std::to_string(++m_sources));
        const QString language = this->language();
        add(language, place.node->translationContext(), source);
        place.twin->messages.emplace_back(language, source);
    }
}

void Session::addForeignMessage()
{
    const std::array<const char*, 4> contexts{"App", "Library:", "Library:/", "Other:/A"};
    const std::string context = contexts.at(m_choices.below(contexts.size()));
    const QString source = q("text " + std::to_string(++m_sources));
    const QString language = this->language();
    add(language, q(context), source);
    m_foreign.insert(messageText(language, context, source, source));
}

void Session::writeAll()
{
    m_notes += "write all\n";
    if (!m_library->boxRoot()->saveAll()) {
        fail("all files of nodes can be written", m_notes);
    }
}

/// Saves in one of the forms, or in place, and goes on with the library or with what is read.
void Session::saveAndRead()
{
    if (++m_saves > a_mostSaves) {
        return;
    }
    dropLeftFiles();
    writeAll();
    const QString path = m_directory.path("Demo.bxl");
    const std::size_t form = m_choices.below(3);
    m_notes += "save in form " + std::to_string(form) + '\n';
    if (form == 2 && !m_library->path().isEmpty()) {
        m_library->save();
    } else {
        m_library->saveTo(path, form == 0 ? KX::BoxLibrary::Directory : KX::BoxLibrary::Archive);
    }
    if (m_library->isDirty()) {
        fail("a saved library is not dirty", m_notes);
    }
    compare(*m_library, m_root, "after a save");
    Library again = open(ProjectModel(path));
    const auto loaded = m_root.clone();
    loaded->sortAsLoaded();
    compare(*again, *loaded, "in what was saved");
    if (m_choices.yes()) {
        m_notes += "go on with what was saved\n";
        m_library = std::move(again);
        m_root = std::move(*loaded);
    }
}

} // namespace

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer chose the name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Session(Choices(data, size)).run();
    return 0;
}
