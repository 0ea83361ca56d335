// Owned camera metadata with typed setters, as the HAL hands metadata to the
// library: session parameters, request settings, capture results and static
// characteristics. The buffer grows when an entry does not fit.
#ifndef HOSTKIT_METADATA_H
#define HOSTKIT_METADATA_H

#include <system/camera_metadata.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace HostKit {

// Tag id of a vendor tag index (GetVendorTagId, resolved by the first
// IuiLayer::Init). Throws std::runtime_error when there is no lookup yet or
// the sibling camera layer has no id for the index.
uint32_t VendorTagId(uint32_t index);

class Metadata {
public:
    explicit Metadata(size_t entryCapacity = 16, size_t dataCapacity = 1024);
    ~Metadata();
    Metadata(Metadata&& other) noexcept;
    Metadata& operator=(Metadata&& other) noexcept;
    Metadata(const Metadata&) = delete;
    Metadata& operator=(const Metadata&) = delete;

    // The buffer; it moves when a later entry makes it grow.
    camera_metadata_t* Get() const { return m_metadata; }

    // Adds an entry of `count` elements of the tag's own type behind the
    // others, as the platform's add does (a second entry of a tag stays behind
    // the first). False when the metadata store refuses it.
    bool Append(uint32_t tagId, const void* data, size_t count);
    // Replaces the tag's entry, or adds it. False when the store refuses it.
    bool TrySet(uint32_t tagId, const void* data, size_t count);
    // The same; throws std::runtime_error naming the tag when refused.
    Metadata& Set(uint32_t tagId, const void* data, size_t count);

    // Vendor tags by their index.
    Metadata& VendorString(uint32_t index, const std::string& text);  // bytes, no terminator
    Metadata& VendorByte(uint32_t index, uint8_t value);
    Metadata& VendorBytes(uint32_t index, const void* data, size_t size);
    Metadata& VendorInt32(uint32_t index, const std::vector<int32_t>& values);
    Metadata& VendorFloat(uint32_t index, float value);
    // Standard tags by id.
    Metadata& Byte(uint32_t tag, uint8_t value);
    Metadata& Int32(uint32_t tag, const std::vector<int32_t>& values);
    Metadata& Float(uint32_t tag, float value);

    // First element of an entry, or -1 when absent or empty.
    int32_t FirstInt32(uint32_t tag) const;
    int32_t FirstByte(uint32_t tag) const;

private:
    // Moves the entries into a buffer with room for one more of `bytes`.
    bool Grow(size_t bytes);

    camera_metadata_t* m_metadata = nullptr;
};

}  // namespace HostKit

#endif  // HOSTKIT_METADATA_H
