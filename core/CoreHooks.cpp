#include "CoreHooks.h"

#include <mutex>

#include "Hooks.h"
#include "Hypertext.h"
#include "NodeFacade.h"
#include "Value.h"

void InstallCoreHooks() {
    static std::once_flag once;
    std::call_once(once, [] {
        Hooks& hooks = EditHooks();
        hooks.pathString = [](const NodeVector& nodes) {
            std::string joined;
            for (size_t i = 0; i < nodes.size(); ++i) {
                if (i)
                    joined += ';';
                joined += NodeFacade(nodes[i]).HTPath();
            }
            return joined;
        };
        hooks.translateColorForDocument = [](Hypertext* document, const std::string& name) {
            return HypertextFacade(document).TranslateColor(name);
        };
        hooks.translateColorForNode = [](const Node* note, const std::string& text) {
            if (text == "automatic" && note) {
                if (Node* prototype = note->GetPrototype())
                    return prototype->GetColor("Color");
            }
            return HypertextFacade(note ? note->GetHypertext() : nullptr).TranslateColor(text);
        };
        hooks.originalOf = [](const Node* note) -> const Node* { return note ? note->GetOriginal() : nullptr; };
        hooks.deleteValueForNote = [](const Node* note, const Value* value) {
            HypertextFacade(note ? note->GetHypertext() : nullptr).DeleteValue(value);
        };
        // Date text such as "$DueDate+1 day" reads the note's attribute.
        hooks.readAttribute = [](Node* note, const std::string& name) {
            return note ? note->GetString(name) : std::string();
        };
    });
}
