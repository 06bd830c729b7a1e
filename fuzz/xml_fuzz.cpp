// Whatever loads is saved, loads again and saves to the same bytes, as the file's own view of it
// and as objects; and nothing that does not load does harm.
#include "require.hpp"
#include "xml_bytes.hpp"

#include <cstddef>
#include <cstdint>
#include <string>

using fuzz::DocumentPtr;
using fuzz::load;
using fuzz::require;
using fuzz::save;

namespace {

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
