#pragma once

#include "picker/content/QXSDKKovalinStickerPickerContentView.h"

#include <QtCore/QStringList>
#include <QtGui/QImage>

#include <functional>
#include <string>
#include <vector>

namespace kovalin::test {

/// Each term as "text:category", the oldest first.
[[nodiscard]] inline QStringList written(const QXSDKKovalinSearchTermList& terms)
{
    QStringList texts;
    for (const auto& term : terms) {
        texts.append(QStringLiteral("%1:%2").arg(term->value()).arg(int(term->category())));
    }
    return texts;
}

class RecordingContentDelegate final : public KovalinStickerPickerContentViewDelegate {
public:
    struct Selected {
        KovalinStickerPtr sticker;
        QImage image;
        int category = -1;
        QStringList terms;
    };

    void kovalinStickerPickerContentViewDidSelectSticker(QXSDKKovalinStickerPickerContentView&,
                                                         const KovalinStickerPtr& sticker, const QImage& image,
                                                         QXSDKKovalinCategory category,
                                                         const QXSDKKovalinSearchTermList& searchSequence) override
    {
        selected.push_back({sticker, image, int(category), written(searchSequence)});
        note("selected");
    }
    void kovalinStickerPickerContentViewSearchFieldFocusDidChangeWithFocus(QXSDKKovalinStickerPickerContentView&,
                                                                           bool hasFocus) override
    {
        note(hasFocus ? "focus" : "no focus");
    }
    void kovalinStickerPickerContentViewDidSelectSearchTag(QXSDKKovalinStickerPickerContentView&) override
    {
        note("tag");
    }
    void kovalinStickerPickerContentViewDidRenderFirstSticker(QXSDKKovalinStickerPickerContentView&,
                                                              double contentViewStartTime) override
    {
        startTimes.push_back(contentViewStartTime);
    }

    std::vector<std::string> told;
    std::vector<Selected> selected;
    std::vector<double> startTimes;
    std::function<void()> then;

private:
    void note(const char* what)
    {
        told.emplace_back(what);
        if (then) {
            then();
        }
    }
};

} // namespace kovalin::test
