#include "SystemAttributes.h"

#include "InitialAttributes.h"

void BuildSystemAttributes(Props* props, Hypertext* hypertext) {
    InitialAttributesForTalvik builder;
    builder.Build(props, hypertext);
}
