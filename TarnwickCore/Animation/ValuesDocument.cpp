#include "TarnwickCore/Animation/ValuesDocument.h"

#include "TarnwickCore/Animation/DocumentJSON.h"
#include "TarnwickCore/Animation/Settings.h"

namespace tarnwick {

ParamValues decodeValues(std::string_view text) {
    nlohmann::json values = parsedDocument(text);
    if (values.is_object() && values.contains("values") && !values["values"].is_number())
        values = nlohmann::json(values["values"]);
    const nlohmann::json settings{
        {"name", ""}, {"values", values}, {"keys", {{"tracks", nlohmann::json::object()}}}};
    return Settings::decode(settings.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace))
        .values;
}

} // namespace tarnwick
