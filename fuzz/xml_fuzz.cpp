// Whatever loads is saved, loads again and saves to the same bytes, as the file's own view of it
// and as objects; and nothing that does not load does harm.
#include <kx/xml_document.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

namespace {

using DocumentPtr = boost::shared_ptr<KX::XmlDocument>;
using FilePtr = std::unique_ptr<FILE, int (*)(FILE*)>;

void require(bool holds, const char* property)
{
    if (!holds) {
        std::fputs("does not hold: ", stderr); // NOLINT(cert-err33-c): about to abort
        std::fputs(property, stderr);          // NOLINT(cert-err33-c): about to abort
        std::abort();
    }
}

DocumentPtr load(const char* bytes, std::size_t size)
{
    // fmemopen refuses an empty buffer; a document of one space is refused for the same reason.
    std::string copy = size == 0 ? " " : std::string(bytes, size);
    const FilePtr stream(fmemopen(copy.data(), copy.size(), "rb"), &std::fclose);
    require(stream != nullptr, "a stream over memory opens");
    std::string error;
    DocumentPtr document = KX::XmlDocument::loadFromXmlFile(stream.get(), &error, nullptr);
    require((document == nullptr) != error.empty(), "an error goes with a refusal");
    return document;
}

std::string save(const KX::XmlDocument& document)
{
    char* bytes = nullptr;
    std::size_t size = 0;
    FilePtr stream(open_memstream(&bytes, &size), &std::fclose);
    require(stream != nullptr, "a stream into memory opens");
    require(document.saveToXmlFile(stream.get(), nullptr, nullptr), "what was loaded is saved");
    stream.reset();
    std::string saved(bytes, size);
    std::free(bytes); // NOLINT(cppcoreguidelines-no-malloc): open_memstream gives it that way
    return saved;
}

// Depth is bounded by the reader.
void visit(const KX::XmlElement& element)
{
    element.text();
    for (const auto& child : element.mixedChildren()) {
        visit(*child);
    }
}

} // namespace

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer chose the name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const DocumentPtr document = load(reinterpret_cast<const char*>(data), size);
    if (!document) {
        return 0;
    }
    const std::string saved = save(*document);
    visit(*document->root());
    require(save(*document) == saved, "objects are written as the file is");
    document->setRoot(document->root()->clone());
    require(save(*document) == saved, "a clone is written as its original is");
    const DocumentPtr again = load(saved.data(), saved.size());
    require(again != nullptr, "what was saved is loaded");
    require(save(*again) == saved, "a second save gives the same bytes");
    return 0;
}
