// Any bytes through every value type, every conversion and comparison, the
// list types and the little parsers. Nothing may crash, hang or leak.
#include <cstddef>
#include <cstdint>
#include <string>

#include "ActionList.h"
#include "ActionResult.h"
#include "ArgList.h"
#include "DateValue.h"
#include "Parser.h"
#include "SetList.h"
#include "Transformer.h"
#include "UnicodeString.h"
#include "Value.h"

namespace {

void Exercise(const Value* v, const Value* other, Transformer* transformer) {
    v->AsString();
    v->AsFormattedString("%Y-%m-%d");
    v->AsRect();
    v->AsLong();
    v->AsUnsignedLong();
    v->AsBoolean();
    v->AsColor();
    v->AsDouble();
    v->AsDictionary();
    v->AsTime();
    v->AsXML();
    v->AsShortString();
    v->AsExportString("l", nullptr);
    SFile file;
    v->AsFile(file);
    v->AsFile();
    v->AsAgentAction(nullptr);
    v->EvaluateFor(nullptr);
    v->compare(other);
    v->compare(other, transformer);
    v->compare(nullptr);
    v->equal(other);
    ValuePtr clone(v->Clone());
    clone->compare(v);
}

template <typename P>
void Drain(P& parser) {
    // Each token consumes input or ends the stream; bound the loop anyway.
    for (int i = 0; i < 100000 && parser.good(); ++i) parser.Token();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::string half = text.substr(0, size / 2);
    auto transformer = Transformer::Create(size % 2 ? "case-insensitive" : "last word");

    ValuePtr untyped(Value::Create(text));
    for (int type = -1; type <= 14; ++type) {
        ValuePtr v(Value::Create(type, text));
        ValuePtr other(Value::Create(type, half));
        Exercise(v.get(), other.get(), transformer.get());
        Exercise(v.get(), untyped.get(), transformer.get());
    }
    ValuePtr(Value::ForInt(text))->AsLong();
    ValuePtr(Value::ForDouble(text))->AsString();
    ValuePtr(Value::ForUnsigned(text))->AsXML();
    ValuePtr(Value::ForDate(text))->AsXML();
    Value::OldTypeTag(text);
    PColor color;
    color.FromString(text);

    ArgList list(text, ';', size % 3 == 0);
    list.ToString(";");
    list.IsNumeric();
    list.IsDate();
    list.HasCaseInsensitive(half);
    ActionList actions(text);
    SetList set(text, ';');
    set.ToString(";");
    set.ToJson();
    set.RemoveKey(half);
    set.Toggle(half, ';');
    set.Remove(half, ';');
    ArgList(text, ':');

    ActionResult result(text);
    result.AsNumber();
    result.AsDouble();
    result.AsDate();
    result.AsInterval();
    result.IsTrue();
    result.AsDictionary();
    result.AsLookupTable(ActionResult(half));
    result.AsTrimmedString();
    result.Append(ActionResult(half)).AsString();

    Parser::Trim(text);
    Parser::TrimParens(text);
    Parser::TrimBrackets(text);
    Parser::EscapeCharacters(text);
    Parser::EscapeBackslash(text);
    Parser::EncodeCharactersNotBackslash(text);
    {
        ParenParser p(text);
        p.Token();
        BraceParser b(text);
        b.Token();
        QuoteParser q(text, '"');
        q.Token();
        TSVQuoteParser t(text);
        t.Token();
        LineParser l(text);
        Drain(l);
        EntityParser e(text);
        e.Token();
        DotParser d(text);
        d.Token();
        NumberParser n(text);
        n.Token();
        Parser raw(text);
        raw.Munch('^');
        raw.Rest();
    }

    UnicodeString u(text);
    u.Lowercase();
    u.Uppercase();
    u.MacRoman();
    u.substr(1, 3);
    u.IsValidUnicode();
    u.EqualCaseInsensitive(UnicodeString(half));
    UnicodeString::FromUTF16(text).UTF8();
    UnicodeString::FromMacRoman(text).UTF8();
    UnicodeString::LocalizedCompare(text, half);
    UnicodeString::ToJSON(text);
    return 0;
}
