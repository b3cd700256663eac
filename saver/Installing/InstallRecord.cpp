#include "saver/Installing/InstallRecord.h"

#include "TarnwickBase/WholeFile.h"
#include "TarnwickCore/Text/OutsideJSON.h"
#include "TarnwickCore/Text/SHA256.h"
#include "TarnwickPlatform/Bundle/TextFile.h"

#include <system_error>

namespace tarnwick {

namespace fs = std::filesystem;

std::string digestOf(std::string_view bytes) {
    SHA256 digest;
    digest.update(bytes);
    return digest.finish();
}

fs::path recordFile(const fs::path& bundle) {
    return bundle / "install.json";
}

std::optional<InstallRecord> recordIn(const fs::path& bundle) {
    const auto document = objectOf(fileBytes(recordFile(bundle)).value_or(""));
    if (!document)
        return std::nullopt;
    const nlohmann::json& files = memberOf(*document, "files");
    if (!files.is_object())
        return std::nullopt;
    InstallRecord record;
    for (const auto& [path, digests] : files.items()) {
        if (!fs::path(path).is_absolute())
            continue;
        for (const nlohmann::json& one : digests) // a string is a sequence of itself
            if (one.is_string())
                record.files[path].insert(one.get<std::string>());
    }
    if (const nlohmann::json& name = memberOf(*document, "name"); name.is_string())
        record.name = name.get<std::string>();
    record.madeProgramList = memberOf(*document, "madeProgramList") == true;
    return record;
}

void writeRecord(const InstallRecord& record, const fs::path& bundle) {
    nlohmann::ordered_json files = nlohmann::ordered_json::object();
    for (const auto& [path, digests] : record.files)
        if (digests.size() == 1)
            files[path.string()] = *digests.begin();
        else
            files[path.string()] = digests;
    const nlohmann::ordered_json document{
        {"name", record.name}, {"files", files}, {"madeProgramList", record.madeProgramList}};
    writeWholeFile(recordFile(bundle),
                   document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) +
                       "\n");
}

bool isUnchanged(const fs::path& file, const std::optional<InstallRecord>& record) {
    std::error_code ignored;
    if (!fs::exists(fs::symlink_status(file, ignored)))
        return true;
    if (!record || !record->files.contains(file) || fs::is_symlink(file, ignored))
        return false;
    const auto bytes = fileBytes(file);
    return bytes && record->files.at(file).contains(digestOf(*bytes));
}

} // namespace tarnwick
