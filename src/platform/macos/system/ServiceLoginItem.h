// The application's registration with the system's service management.
#pragma once

#include "ports/LoginItem.h"

namespace sonvara {

/// Works for the signed bundle only; elsewhere the status is `notFound` and both requests fail.
class ServiceLoginItem final : public LoginItem {
public:
    [[nodiscard]] LoginItemStatus status() const override;
    [[nodiscard]] std::optional<std::string> registerItem() override;
    [[nodiscard]] std::optional<std::string> unregisterItem() override;
};

}  // namespace sonvara
