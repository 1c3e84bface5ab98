#include "Attribute.h"

#include <algorithm>
#include <atomic>

#include "Hypertext.h"
#include "Log.h"
#include "Node.h"
#include "NodeFacade.h"
#include "Prefs.h"
#include "PropertyList.h"
#include "STime.h"
#include "Value.h"

// ---------------------------------------------------------------- Attribute

namespace {
uint64_t NextSummaryBit() {
    static std::atomic<unsigned> next{0};
    return uint64_t{1} << (next++ % 64);
}
} // namespace

Attribute::Attribute(const std::string& n, int t, bool e)
    : AttributeType(kNone), cloneQueue("com.morvent.rylvane.attributeClone." + n), name(n), attributeType(t),
      editable(e), summaryBit(NextSummaryBit()) {}

std::string Attribute::NameOfType(int code) {
    static const char* const names[] = {"string", "color", "number", "file",   "Boolean", "date",    "unsigned",
                                        "action", "set",   "URL",    "list",   "font",    "interval"};
    if (code < 0 || code > 12)
        return "";
    return names[code];
}

Attribute::~Attribute() = default;

bool Attribute::NeedToWrite(const Node* note, const Attribute* attribute, const Value* value) const {
    if (IsHidden())
        return false;
    if (IsDate() || IsSequential())
        return true;
    if (name == "ID" || name == "Creator")
        return false;
    if (!CanInherit())
        return true;
    if (name == "HTMLExportChildren" && note && note->IsAgent() && value && value->AsBoolean())
        return true;
    if (!value)
        return false;
    if (const Node* prototype = note ? note->GetPrototype() : nullptr) {
        const Value* inherited = prototype->Get(this);
        return !inherited || value->compare(inherited) != 0;
    }
    const Value* standard = GetDefaultValue(note);
    return !standard || value->compare(standard) != 0;
}

void Attribute::Sort() {
    auto comparison = std::make_shared<AttributeNameComparator>();
    TTree<Attribute*>::Sort(TreeComparator(comparison));
}

Value* Attribute::ClonedValueFor(const Node* note) const {
    if (ReadsOtherNotes())
        return Value::Create(ComputeText(note));
    auto clone = [&]() -> Value* {
        const Value* v = ValueFor(note);
        return v ? v->Clone() : Value::Create("");
    };
    // See ReadsStoredValuesOnly: the caller holds the note's lock.
    if (ReadsStoredValuesOnly())
        return clone();
    return cloneQueue.Sync(clone);
}

std::string Attribute::Category() const {
    if (IsAttributeCategory())
        return name;
    if (Attribute* f = Father())
        return f->name;
    return "no category";
}

void Attribute::SetDefault(const std::string& text) { SetDefault(Value::Create(GetType(), text)); }

void Attribute::SetDefaultBoolean(bool value) { SetDefault(Value::ForBoolean(value)); }

std::string Attribute::GetDefaultValueAsString(const Node* note) const {
    const Value* v = GetDefaultValue(note);
    return v ? v->AsString() : std::string();
}

std::string Attribute::GetDefaultValueAsString() const {
    const Value* v = GetTheDefaultValue();
    return v ? v->AsString() : std::string();
}

std::string Attribute::GetDefaultValueAsXML(const Hypertext*) const {
    const Value* v = GetTheDefaultValue();
    return v ? v->AsXML() : std::string();
}

void Attribute::Normalize(Node* note) {
    if (!note || (GetType() != kSet && GetType() != kDictionary))
        return;
    ArgList items(note->GetString(this), ';', false);
    std::vector<std::string> sorted;
    for (int i = 0; i < static_cast<int>(items.size()); ++i)
        sorted.push_back(items.at(i));
    std::sort(sorted.begin(), sorted.end());
    std::string joined;
    for (size_t i = 0; i < sorted.size(); ++i) {
        if (i)
            joined += ';';
        joined += sorted[i];
    }
    note->Set(this, joined);
}

// The category "User" itself is no user attribute: only what lies under it.
bool Attribute::IsUserAttribute() const {
    for (const Attribute* a = Father(); a && !a->IsRoot(); a = a->Father())
        if (a->name == "User")
            return true;
    return false;
}

void Attribute::SetName(const std::string& newName) {
    // Lists of values are kept in the order of attribute names; a renamed
    // attribute may stand out of that order in them from now on.
    struct RenameCheck {
        const std::string& name;
        const std::string before;
        ~RenameCheck() {
            if (!before.empty() && before != name)
                PropertyList::AttributeRenamed();
        }
    } check{name, name};
    bool needsCleaning = false;
    for (unsigned char c : newName)
        if (c == ' ' || c == '>' || (c >= '0' && c <= '9'))
            needsCleaning = true;
    if (!needsCleaning) {
        name = newName;
        return;
    }
    // Read as a stream of non-white words: white space vanishes, anything
    // else that is not a letter or digit becomes "_".
    std::string cleaned;
    for (unsigned char c : newName) {
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v')
            continue;
        cleaned.push_back(std::isalnum(c) ? static_cast<char>(c) : '_');
    }
    name = cleaned;
}

void Attribute::Changed(Node* note) const {
    if (note)
        note->Changed(GetChangeFacets());
}

void Attribute::Initialize(Hypertext* hypertext) {
    if (!hypertext || !IsSequential() || !IsNumber())
        return;
    Node* root = hypertext->Root();
    for (Node* n = root ? root->Next() : nullptr; n; n = n->Next())
        InitializeSequentialValue(n);
}

void Attribute::SuggestedValues(const std::string& list) { suggestedValues = ArgList(list, ';', false); }

void Attribute::InitializeSequentialValue(Node* note) {
    if (!note || note->IsAlias())
        return;
    const Value* d = GetDefaultValue(note);
    long standard = d ? d->AsLong() : 0;
    const Value* immediate = ImmediateValue(note);
    if (immediate && immediate->AsLong() > standard)
        return;
    SetDefault(Value::ForInt(static_cast<int>(standard + 1)));
    note->Set(this, Value::ForInt(static_cast<int>(standard + 1)));
}

bool Attribute::IsValidAttributeName(const std::string& name) {
    if (name.empty())
        return false;
    if (name[0] >= '0' && name[0] <= '9')
        return false;
    static const std::string forbidden = " .,;'?/*@%$+=-\"[]{}\r\t";
    return name.find_first_of(forbidden) == std::string::npos;
}

// ----------------------------------------------------------- BasicAttribute

BasicAttribute::BasicAttribute(const std::string& n, int t, bool e) : Attribute(n, t, e) {
    defaultValue.reset(InitialDefaultValue());
}

BasicAttribute::~BasicAttribute() = default;

const Value* BasicAttribute::ValueFor(const Node* note) const {
    if (const Value* v = ImmediateValue(note))
        return v;
    return GetDefaultValue(note);
}

const Value* BasicAttribute::ImmediateValue(const Node* note) const { return note ? note->DoGet(this) : nullptr; }

void BasicAttribute::Set(Node* note, const Value* value) {
    if (!note) {
        ConstValuePtr dropped(value);
        return;
    }
    WillSet(note, value);
    note->DoSet(this, value);
}

void BasicAttribute::Remove(Node* note) {
    if (note)
        note->DoRemove(this);
}

void BasicAttribute::SetDefault(Value* value) {
    if (!value || defaultValue.get() == value)
        return;
    defaultValue.reset(value);
}

const Value* BasicAttribute::GetDefaultValue(const Node*) const { return defaultValue.get(); }

void BasicAttribute::SetType(int t) {
    Attribute::SetType(t);
    defaultValue.reset(InitialDefaultValue());
}

Value* BasicAttribute::InitialDefaultValue() const {
    switch (GetType()) {
    case kNumber: return Value::ForInt(0);
    case kBoolean: return Value::ForBoolean(false);
    case kDate: return Value::ForDate(STime::Never());
    case kInterval: return Value::ForInterval("");
    case kDictionary: return Value::Create(kDictionary, "");
    default: return Value::Create("");
    }
}

void BasicAttribute::NewlyCreated(Node* note) {
    if (!note || note->IsAlias())
        return;
    if (IsDate()) {
        if (note->DoGetImmediate(this))
            return;
        const Value* d = GetDefaultValue(note);
        if (d && !d->AsTime().IsNever())
            note->Set(this, d->Clone());
    } else if (IsNumber() && IsSequential()) {
        InitializeSequentialValue(note);
    }
}

// ------------------------------------------ RenamedAndDeprecatedAttribute

RenamedAndDeprecatedAttribute::RenamedAndDeprecatedAttribute(const std::string& n, int t, bool e, Attribute* tgt)
    : BasicAttribute(n, t, e), target(tgt) {}

const Value* RenamedAndDeprecatedAttribute::ValueFor(const Node* note) const {
    return target ? target->ValueFor(note) : BasicAttribute::ValueFor(note);
}

const Value* RenamedAndDeprecatedAttribute::ImmediateValue(const Node* note) const {
    return target ? target->ImmediateValue(note) : BasicAttribute::ImmediateValue(note);
}

void RenamedAndDeprecatedAttribute::Set(Node* note, const Value* value) {
    if (target)
        target->Set(note, value);
    else
        BasicAttribute::Set(note, value);
}

void RenamedAndDeprecatedAttribute::Remove(Node* note) {
    if (target)
        target->Remove(note);
    else
        BasicAttribute::Remove(note);
}

void RenamedAndDeprecatedAttribute::SetDefault(Value* value) {
    if (target)
        target->SetDefault(value);
    else
        BasicAttribute::SetDefault(value);
}

const Value* RenamedAndDeprecatedAttribute::GetDefaultValue(const Node* note) const {
    return target ? target->GetDefaultValue(note) : BasicAttribute::GetDefaultValue(note);
}

const Value* RenamedAndDeprecatedAttribute::GetTheDefaultValue() const {
    return target ? target->GetTheDefaultValue() : BasicAttribute::GetTheDefaultValue();
}

bool RenamedAndDeprecatedAttribute::ReadsOtherNotes() const { return target && target->ReadsOtherNotes(); }

std::string RenamedAndDeprecatedAttribute::ComputeText(const Node* note) const {
    return target ? target->ComputeText(note) : std::string();
}

std::string RenamedAndDeprecatedAttribute::Category() const {
    return target ? target->Category() : BasicAttribute::Category();
}

// ----------------------------------------------------------- ShadowAttribute

const Value* ShadowAttribute::GetDefaultValue(const Node* note) const {
    if (!note || note->IsAdornment()) {
        if (!falseValue)
            falseValue = Value::ForBoolean(false);
        return falseValue;
    }
    return BasicAttribute::GetDefaultValue(note);
}

// --------------------------------------------------------- ReadOnlyAttribute

void ReadOnlyAttribute::Set(Node* note, const Value* value) {
    ConstValuePtr dropped(value);
    LogLine("Writing to a read only attribute <" + Name() + "> for node [" + (note ? note->Name() : "") + "]");
}

void ReadOnlyAttribute::Remove(Node* note) {
    LogLine("Removing a read only attribute <" + Name() + "> for node [" + (note ? note->Name() : "") + "]");
}

namespace {
RylSerial& AttributeWorkQueue() {
    static RylSerial queue("com.morvent.rylvane.AttributeWorkQueue");
    return queue;
}
} // namespace

ComputedValueSlot::~ComputedValueSlot() {
    if (cached)
        cached->Delete();
}

const Value* ComputedValueSlot::Keep(const Node* note, Value* fresh) const {
    return AttributeWorkQueue().Sync([&]() -> const Value* {
        if (cached)
            HypertextFacade(note ? note->GetHypertext() : nullptr).DeleteValue(cached);
        cached = fresh;
        return cached;
    });
}

const Value* ComputedValueSlot::KeepText(const Node* note, const std::string& text) const {
    return AttributeWorkQueue().Sync([&]() -> const Value* {
        if (cached && cached->AsString() == text)
            return cached;
        return Keep(note, Value::Create(text));
    });
}

const Value* ComputedValueSlot::KeepInteger(const Node* note, long n) const {
    return AttributeWorkQueue().Sync([&]() -> const Value* {
        if (cached && cached->AsLong() == n && cached->AsString() == std::to_string(n))
            return cached;
        return Keep(note, Value::ForInt(static_cast<int>(n)));
    });
}

// ----------------------------------------------------------- CachedAttribute

const Value* CachedAttribute::ValueFor(const Node* note) const { return slot.KeepInteger(note, DoGetValue(note)); }

// ------------------------------------------------------- PreferenceAttribute

PreferenceAttribute::PreferenceAttribute(const std::string& n, int k, int t, bool e) : BasicAttribute(n, t, e), kind(k) {}

const Value* PreferenceAttribute::GetDefaultValue(const Node* note) const {
    if (!note) {
        ValuePtr& slot = const_cast<PreferenceAttribute*>(this)->defaultValue;
        if (!slot || !slot->AsString().empty())
            slot.reset(Value::Create(""));
        return slot.get();
    }
    return GetDefaultValue(note->GetPreferences());
}

const Value* PreferenceAttribute::GetDefaultValue(const Prefs* prefs) const {
    ValuePtr fresh(MakePreferenceValue(prefs));
    ValuePtr& slot = const_cast<PreferenceAttribute*>(this)->defaultValue;
    // Keep the answer stable: the same text answers the same object.
    if (!slot || !fresh || slot->AsString() != fresh->AsString())
        slot = std::move(fresh);
    return slot.get();
}

void PreferenceAttribute::SetDefault(Value* value) {
    // The preference is the default; an explicit default is dropped.
    ValuePtr dropped(value);
}

std::string PreferenceAttribute::GetDefaultValueAsXML(const Hypertext* hypertext) const {
    const Prefs* prefs = hypertext ? hypertext->GetPreferences() : nullptr;
    if (!prefs)
        return "";
    ValuePtr v(MakePreferenceValue(prefs));
    return v ? v->AsXML() : std::string();
}

Value* PreferenceAttribute::MakePreferenceValue(const Prefs* prefs) const {
    switch (kind) {
    case 0: return defaultValue ? defaultValue->Clone() : Value::Create("");
    case 9: return Value::Create(prefs ? prefs->StringFor(kind) : std::string(".html"));
    case 19: return Value::ForInt(prefs ? static_cast<int>(prefs->NumberFor(kind)) : 16);
    case 22: {
        int align = prefs ? static_cast<int>(prefs->NumberFor(kind)) : 0;
        return Value::Create(align == -1 ? "right" : align == 1 ? "center" : "left");
    }
    case 17: return Value::ForBoolean(false);
    default: break;
    }
    if (!prefs)
        return Value::Create(GetType(), "");
    switch (Prefs::KindShape(kind)) {
    case Prefs::kBooleanField: return Value::ForBoolean(prefs->BooleanFor(kind));
    case Prefs::kNumberField: {
        double d = prefs->NumberFor(kind);
        if (kind == 14)
            return Value::ForInt(static_cast<int>(d));
        return Value::ForDouble(d);
    }
    case Prefs::kRectField: return Value::Create(100, prefs->StringFor(kind));
    default: return Value::Create(GetType(), prefs->StringFor(kind));
    }
}

// ------------------------------------------------------------- NullAttribute

void NullAttribute::Set(Node*, const Value* value) { ConstValuePtr dropped(value); }

bool AttributeNameComparator::operator()(const Tree* a, const Tree* b) const {
    auto* x = static_cast<const Attribute*>(a);
    auto* y = static_cast<const Attribute*>(b);
    if (x->IsValid() != y->IsValid())
        return x->IsValid();
    return x->Name() < y->Name();
}
