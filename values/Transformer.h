#pragma once
// A transformer rewrites a text before it is compared or exported, and may
// redirect a sort to another note (the original of an alias). Sorting by an
// attribute uses the transformer named by SortTransform / SortAlsoTransform;
// export filters use the text transformers.
#include <memory>
#include <vector>
#include <string>

class Node;

class Transformer {
public:
    virtual ~Transformer();

    // By name: "normal" and "" give the identity, "lowercase" and
    // "case-insensitive" TransformerLowerCase, "last word" TransformerLastWord,
    // "original note" TransformerOriginal. Any other name (such as the default
    // "case-sensitive") gives the identity.
    static std::unique_ptr<Transformer> Create(const std::string& name);

    // The identity.
    virtual std::string Transform(const std::string& text) const;
    // The note to read a value from: the note itself.
    virtual const Node* ChooseNode(const Node* note) const;
};

// Lower case in the user's locale.
class TransformerLowerCase : public Transformer {
public:
    std::string Transform(const std::string& text) const override;
};

// Upper case in the user's locale.
class TransformerUpperCase : public Transformer {
public:
    std::string Transform(const std::string& text) const override;
};

// Upper-cases the first letter of each blank-delimited word and joins the
// words with one blank.
class TransformerCapitalize : public Transformer {
public:
    std::string Transform(const std::string& text) const override;
};

// The first blank-delimited word.
class TransformerFirstWord : public Transformer {
public:
    std::string Transform(const std::string& text) const override;
};

// The last blank-delimited word.
class TransformerLastWord : public Transformer {
public:
    std::string Transform(const std::string& text) const override;
};

// Reads from the original of an alias; the text is left alone.
class TransformerOriginal : public Transformer {
public:
    const Node* ChooseNode(const Node* note) const override;
};
