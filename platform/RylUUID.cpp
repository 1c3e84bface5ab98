#include "RylUUID.h"

#include <uuid/uuid.h>

std::string NewUUIDString() {
    uuid_t id;
    uuid_generate(id);
    char text[37];
    uuid_unparse_upper(id, text);
    return text;
}
