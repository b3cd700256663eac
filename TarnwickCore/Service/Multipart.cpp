#include "TarnwickCore/Service/Multipart.h"

#include <array>
#include <random>

namespace tarnwick {

std::string Multipart::makeBoundary() {
    static_assert(sizeof(std::random_device::result_type) == 4);
    std::random_device random;
    std::array<std::uint8_t, 16> bytes{};
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40); // version 4
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80); // variant of the RFC
    std::string text = "Tarnwick-";
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        if (index == 4 || index == 6 || index == 8 || index == 10)
            text += '-';
        text += "0123456789ABCDEF"[bytes[index] >> 4];
        text += "0123456789ABCDEF"[bytes[index] & 15];
    }
    return text;
}

void Multipart::add(std::string_view name, std::optional<std::string_view> fileName,
                    std::string_view contentType, std::string data) {
    std::string header = "Content-Disposition: form-data; name=\"" + std::string(name) + "\"";
    if (fileName)
        header += "; filename=\"" + std::string(*fileName) + "\"";
    header += "\r\nContent-Type: " + std::string(contentType) + "\r\n\r\n";
    parts.push_back({.header = std::move(header), .data = std::move(data)});
}

std::string Multipart::contentType() const {
    return "multipart/form-data; boundary=" + boundary;
}

std::string Multipart::body() const {
    std::size_t size = boundary.size() + 8;
    for (const Part& part : parts)
        size += boundary.size() + part.header.size() + part.data.size() + 8;
    std::string body;
    body.reserve(size);
    for (const Part& part : parts)
        body.append("--")
            .append(boundary)
            .append("\r\n")
            .append(part.header)
            .append(part.data)
            .append("\r\n");
    return body.append("--").append(boundary).append("--\r\n");
}

} // namespace tarnwick
