#include "platform/store/SvgCheck.h"

#include <QtCore/QHash>
#include <QtCore/QStringList>
#include <QtCore/QXmlStreamReader>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace kovalin::platform {

namespace {

// Drawings of stickers have hundreds of elements.
constexpr std::size_t kMaxElements = 20'000;
constexpr qint64 kMaxDrawn = 100'000;
constexpr int kMaxDepth = 100; // nesting, and elements that stand for others

/// One element, as far as it counts how much is drawn.
struct Element {
    std::vector<std::size_t> children = {};
    QStringList repeated = {}; // the ids of those that it stands for
    qint64 drawn = -1;         // how many elements it draws; less than 0 until that is known
    bool isPaint = false;
    bool isBeingCounted = false;
};

// By their local names, which are all that Qt's reader looks at.
bool isForbidden(QStringView name)
{
    static constexpr QStringView forbidden[] = {
        u"image",  u"feImage", u"font",  u"font-face", u"foreignObject",
        u"script", u"video",   u"audio", u"animation", u"handler",
    };
    return std::ranges::find(forbidden, name) != std::end(forbidden);
}

/// The ids in all "url(#id)" of `text`; absent if one of them leads out of the document.
std::optional<QStringList> idsOfUrls(QStringView text)
{
    constexpr QStringView opening = u"url(";
    QStringList ids;
    for (qsizetype at = text.indexOf(opening, 0, Qt::CaseInsensitive); at >= 0;
         at = text.indexOf(opening, at, Qt::CaseInsensitive)) {
        at += opening.size();
        qsizetype end = text.indexOf(u')', at);
        end = end < 0 ? text.size() : end;
        QString target = text.sliced(at, end - at).toString();
        target.remove(u'"').remove(u'\'');
        target = target.trimmed();
        if (!target.startsWith(u'#')) {
            return std::nullopt;
        }
        ids.append(target.sliced(1));
    }
    return ids;
}

class SvgCheck final {
public:
    explicit SvgCheck(const QByteArray& bytes)
        : _xml(bytes)
    {
    }

    std::optional<QString> defect()
    {
        while (!_xml.atEnd() && !_defect) {
            _take(_xml.readNext());
        }
        if (!_defect && _xml.hasError()) {
            _defect = _xml.errorString();
        }
        if (!_defect && _elements.empty()) {
            _defect = QStringLiteral("it has no elements");
        }
        if (!_defect && (!_count(0, 0) || _elements.front().drawn > kMaxDrawn)) {
            _defect = QStringLiteral("it draws too much by repetition");
        }
        return _defect;
    }

private:
    void _take(QXmlStreamReader::TokenType token)
    {
        switch (token) {
        case QXmlStreamReader::DTD:
            if (!_xml.entityDeclarations().isEmpty() || !_xml.notationDeclarations().isEmpty()) {
                _defect = QStringLiteral("it declares entities");
            }
            break;
        case QXmlStreamReader::ProcessingInstruction:
            if (_xml.processingInstructionTarget().compare(u"xml-stylesheet", Qt::CaseInsensitive) == 0) {
                _defect = QStringLiteral("it takes a style sheet from outside");
            }
            break;
        case QXmlStreamReader::StartElement:
            _begin();
            break;
        case QXmlStreamReader::EndElement:
            _open.pop_back();
            break;
        case QXmlStreamReader::Characters:
            _checkStyle(_xml.text());
            break;
        default:
            break;
        }
    }

    void _begin()
    {
        if (isForbidden(_xml.name())) {
            _defect = QStringLiteral("it has the element \"%1\"").arg(_xml.name());
            return;
        }
        if (_elements.empty() && _xml.name() != u"svg") {
            _defect = QStringLiteral("it is no SVG");
            return;
        }
        if (_elements.size() >= kMaxElements || _open.size() >= kMaxDepth) {
            _defect = QStringLiteral("it has too many elements");
            return;
        }
        const std::size_t index = _elements.size();
        _elements.emplace_back();
        _elements.back().isPaint = _xml.name().endsWith(u"Gradient");
        if (!_open.empty()) {
            _elements[_open.back()].children.push_back(index);
        }
        _open.push_back(index);
        for (const QXmlStreamAttribute& attribute : _xml.attributes()) {
            _takeAttribute(attribute, index);
        }
    }

    void _takeAttribute(const QXmlStreamAttribute& attribute, std::size_t index)
    {
        const QStringView value = attribute.value().trimmed();
        if (attribute.name() == u"id") {
            _indexOfId.insert(value.toString(), index);
        } else if (attribute.name() == u"href" && _xml.name() != u"a") {
            if (!value.startsWith(u'#')) {
                _refuseOutside();
                return;
            }
            _elements[index].repeated.append(value.sliced(1).toString());
        } else if (const auto ids = idsOfUrls(value)) {
            _elements[index].repeated.append(*ids);
        } else {
            _refuseOutside();
        }
    }

    void _checkStyle(QStringView text)
    {
        // Wherever it stands: a text that only looks so isn't worth telling apart.
        if (text.contains(u"@import", Qt::CaseInsensitive) || !idsOfUrls(text)) {
            _refuseOutside();
        }
    }

    void _refuseOutside() { _defect = QStringLiteral("it takes something from outside"); }

    /// How many elements `index` draws. False if that can't be told: it is too deep, or stands for itself.
    bool _count(std::size_t index, int depth)
    {
        Element& element = _elements[index];
        if (element.drawn >= 0) {
            return true;
        }
        if (element.isBeingCounted || depth > kMaxDepth) {
            return false;
        }
        element.isBeingCounted = true;
        qint64 drawn = 1;
        const auto add = [&](std::size_t part) {
            const bool isCounted = _count(part, depth + 1);
            drawn = std::min(drawn + (isCounted ? _elements[part].drawn : 0), kMaxDrawn + 1);
            return isCounted;
        };
        for (const std::size_t child : element.children) {
            if (!add(child)) {
                return false;
            }
        }
        for (const QString& id : element.repeated) {
            const auto found = _indexOfId.constFind(id);
            if (found != _indexOfId.cend() && !add(*found)) {
                return false;
            }
        }
        element.isBeingCounted = false;
        element.drawn = element.isPaint ? 0 : drawn;
        return true;
    }

    QXmlStreamReader _xml;
    std::optional<QString> _defect;
    std::vector<Element> _elements;
    std::vector<std::size_t> _open;
    QHash<QString, std::size_t> _indexOfId;
};

} // namespace

std::optional<QString> defectOfSvg(const QByteArray& bytes)
{
    return SvgCheck(bytes).defect();
}

} // namespace kovalin::platform
