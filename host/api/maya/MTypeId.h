#pragma once

/// The number that stands for a node or data type in files.
class MTypeId {
  public:
    constexpr MTypeId() noexcept = default;
    constexpr explicit MTypeId(unsigned int id) noexcept : id_(id) {}
    /// A registered 24-bit block prefix and an id below 256 within the block.
    constexpr MTypeId(unsigned int prefix, unsigned int id) noexcept : id_((prefix << 8) | (id & 0xFFu)) {}

    constexpr unsigned int id() const noexcept { return id_; }
    constexpr bool operator==(const MTypeId& other) const noexcept = default;

  private:
    unsigned int id_ = 0;
};
