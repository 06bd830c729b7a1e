#include "box_texts.hpp"

namespace kxbox {

namespace {

template <class List>
void append(QStringList& texts, const List& list)
{
    for (const auto& io : list) {
        for (const std::string& text : {io->name(), io->tooltip()}) {
            if (!text.empty()) {
                texts += QString::fromStdString(text);
            }
        }
    }
}

} // namespace

QStringList ioTexts(const KX::BoxData& box)
{
    QStringList texts;
    append(texts, box.inputs());
    append(texts, box.outputs());
    append(texts, box.parameters());
    return texts;
}

QStringList translatableTexts(const KX::BoxData& box)
{
    QStringList texts = ioTexts(box);
    if (!box.tooltip().isEmpty()) {
        texts.prepend(box.tooltip());
    }
    texts.removeDuplicates();
    return texts;
}

} // namespace kxbox
