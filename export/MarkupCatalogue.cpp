// MarkupExportElement::Create: the table of element names, tested in this
// order.
#include <cctype>
#include <functional>
#include <utility>

#include "MarkupCloud.h"
#include "MarkupEncode.h"
#include "MarkupExportElement.h"
#include "MarkupGroup.h"
#include "MarkupIf.h"
#include "MarkupInclude.h"
#include "MarkupLinkList.h"
#include "MarkupText.h"
#include "MarkupValue.h"
#include "Transformer.h"

namespace {

using Maker = std::function<ExportElement*(const std::string& name, const std::string& arguments)>;

template <class T, class... Extra>
Maker Make(Extra... extra) {
    return [=](const std::string& name, const std::string& arguments) -> ExportElement* {
        return new T(name, arguments, extra...);
    };
}

// ^parenturl^ and its kin: a URL element with a fixed argument.
Maker FixedURL(const char* designator) {
    return [=](const std::string& name, const std::string&) -> ExportElement* {
        return new MarkupURL(name, designator);
    };
}

template <class T>
Maker Filter() {
    return [](const std::string& name, const std::string& arguments) -> ExportElement* {
        return new MarkupFilter(name, arguments, std::make_unique<T>());
    };
}

const std::vector<std::pair<const char*, Maker>>& Table() {
    using LL = MarkupLinkList;
    using NI = MarkupNoteInfo;
    using GN = MarkupGroupNumeric;
    static const std::vector<std::pair<const char*, Maker>> table = {
        {"title", Make<MarkupTitle>()},
        {"value", Make<MarkupValue>()},
        {"action", Make<MarkupAction>()},
        {"do", Make<MarkupDo>()},
        {"encode", Make<MarkupEncode>(MarkupEncode::kEntities)},
        {"urlencode", Make<MarkupEncode>(MarkupEncode::kURL)},
        {"idencode", Make<MarkupEncode>(MarkupEncode::kIdentifier)},
        {"backslashencode", Make<MarkupEncode>(MarkupEncode::kBackslash)},
        {"opmlencode", Make<MarkupEncode>(MarkupEncode::kOPML)},
        {"doctitle", Make<MarkupDocumentTitle>()},
        {"get", Make<MarkupGetAttribute>(false)},
        {"getfor", Make<MarkupGetAttribute>(true)},
        {"descendents", Make<MarkupIncludeChildrenHere>(false)},
        {"descendants", Make<MarkupIncludeChildrenHere>(false)},
        {"justchildren", Make<MarkupIncludeChildrenHere>(true)},
        {"children", Make<MarkupIncludeChildrenHere>(true)},
        {"include", Make<MarkupInclude>()},
        {"randomchildof", Make<MarkupRandomChild>()},
        {"version", Make<MarkupVersion>()},
        {"today", Make<MarkupDate>(std::string())},
        {"created", Make<MarkupDate>(std::string("Created"))},
        {"lastmodified", Make<MarkupDate>(std::string("Modified"))},
        {"modified", Make<MarkupDate>(std::string("Modified"))},
        {"creator", Make<NI>(NI::kCreator)},
        {"file", Make<NI>(NI::kFile)},
        {"path", Make<NI>(NI::kPath)},
        {"directory", Make<NI>(NI::kDirectory)},
        {"url", Make<MarkupURL>()},
        {"host", Make<NI>(NI::kHost)},
        {"coverurl", FixedURL("cover")},
        {"parenturl", FixedURL("parent")},
        {"childurl", FixedURL("child")},
        {"previoussibling", FixedURL("prevsibling")},
        {"prevsibling", FixedURL("prevsibling")},
        {"nextsibling", FixedURL("nextsibling")},
        {"firstsibling", FixedURL("firstSibling")},
        {"firstSibling", FixedURL("firstSibling")},
        {"lastsibling", FixedURL("lastSibling")},
        {"lastSibling", FixedURL("lastSibling")},
        {"previousurl", FixedURL("previous")},
        {"nexturl", FixedURL("next")},
        {"exists", Make<MarkupExists>()},
        {"else", Make<MarkupElse>()},
        {"endif", Make<MarkupEndif>()},
        {"not", Make<MarkupNot>()},
        {"comment", Make<MarkupComment>()},
        {"equal", Make<MarkupCompare>(MarkupCompare::kEqual)},
        {"isinside", Make<MarkupIsInside>()},
        {"isdescendedfrom", Make<MarkupIsDescendedFrom>()},
        {"contains", Make<MarkupCompare>(MarkupCompare::kContains)},
        {"beginswith", Make<MarkupCompare>(MarkupCompare::kBeginsWith)},
        {"endswith", Make<MarkupCompare>(MarkupCompare::kEndsWith)},
        {"days", Make<MarkupCompare>(MarkupCompare::kDays)},
        {"sectionnumber", Make<MarkupSectionNumber>()},
        {"linkto", Make<MarkupLinkTo>()},
        {"ancestors", Make<MarkupAncestors>()},
        {"siblings", Make<MarkupSiblings>()},
        {"childlinks", Make<MarkupChildLinks>()},
        {"basiclinks", Make<LL>(LL::kBasic)},
        {"outboundlinks", Make<LL>(LL::kBasic)},
        {"inboundlinks", Make<LL>(LL::kInbound)},
        {"inboundtextlinks", Make<LL>(LL::kInboundText)},
        {"outboundtextlinks", Make<LL>(LL::kOutboundText)},
        {"inboundbasiclinks", Make<LL>(LL::kInboundBasic)},
        {"outboundbasiclinks", Make<LL>(LL::kOutboundBasic)},
        {"outboundweblinks", Make<LL>(LL::kWeb)},
        {"similarto", Make<MarkupSimilar>()},
        {"root", Make<MarkupRoot>()},
        {"setroot", Make<MarkupSetRoot>()},
        {"notecloud", Make<MarkupCloud>(MarkupCloud::kNote)},
        {"cloud", Make<MarkupCloud>(MarkupCloud::kNote)},
        {"sectioncloud", Make<MarkupCloud>(MarkupCloud::kSection)},
        {"documentcloud", Make<MarkupCloud>(MarkupCloud::kDocument)},
        {"text", Make<MarkupText>(false)},
        {"paragraphs", Make<MarkupText>(true)},
        {"randomline", Make<MarkupRandomLine>()},
        {"indent", Make<MarkupIndent>()},
        {"every", Make<MarkupEvery>(true)},
        {"any", Make<MarkupEvery>(false)},
        {"count", Make<GN>(GN::kCount)},
        {"sum", Make<GN>(GN::kSum)},
        {"min", Make<GN>(GN::kMin)},
        {"max", Make<GN>(GN::kMax)},
        {"mean", Make<GN>(GN::kMean)},
        {"lowercase", Filter<TransformerLowerCase>()},
        {"uppercase", Filter<TransformerUpperCase>()},
        {"capitalize", Filter<TransformerCapitalize>()},
        {"firstword", Filter<TransformerFirstWord>()},
        {"lastword", Filter<TransformerLastWord>()},
        {"stretch", Make<MarkupStretchtext>()},
    };
    return table;
}

}  // namespace

ExportElement* MarkupExportElement::Create(const std::string& name, const std::string& arguments, bool hasArguments,
                                           TemplateReader& reader, int depth) {
    if (name == "if") {
        auto* element = new MarkupIf(name, arguments);
        // Deeper nesting reads the rest as plain text and elements, so that
        // runaway input cannot exhaust the stack.
        if (depth < kMaxParseDepth)
            reader.ReadIf(element, depth);
        return element;
    }
    for (const auto& [known, make] : Table())
        if (name == known)
            return make(name, arguments);
    std::string shown = "^";
    if (!name.empty() && std::isalpha(static_cast<unsigned char>(name[0])))
        shown += " ";
    shown += name;
    if (hasArguments)
        shown += "(" + arguments + ")";
    return new LiteralElement(shown);
}
