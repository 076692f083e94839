// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gige/DiscoveredCamera.h"
#include "gige/ForceIp.h"
#include "platform/NetworkAdapters.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace cli {

/// What a person asks of a camera's address.
struct AddressRequest {
    QString camera;
    /// Empty for any free address.
    std::optional<std::uint32_t> address;
    /// Empty for the mask of the adapter.
    std::optional<std::uint32_t> mask;
    std::uint32_t gateway = 0;
    bool isPersistent = false;
};

/// What a search has found, and the addresses of this host.
struct KnownNetwork {
    std::vector<gige::DiscoveredCamera> cameras;
    std::vector<platform::NetworkAdapter> adapters;
};

/// The camera, this host's address beside which it gets its own, and the settings.
struct AddressPlan {
    gige::DiscoveredCamera camera;
    platform::NetworkAdapter adapter;
    gige::IpSettings settings;
};

/// Reads "192.168.1.10", "192.168.1.10/24" or "auto", and a gateway, which may be empty. Throws a
/// Failure for other texts.
AddressRequest addressRequest(const QString& camera, const QString& address,
                              const QString& gateway);

/// Chooses camera, adapter and address, and checks them against what is known. Throws a Failure
/// when no or more than one camera has the name, and when the camera cannot have or cannot use the
/// address. \p taken are further addresses that are in use. Reentrant.
AddressPlan planAddress(const AddressRequest& request, const KnownNetwork& network,
                        const std::vector<std::uint32_t>& taken = {});

/// The address as a text.
QString shownAddress(std::uint32_t address);
/// The ID by which a person names the camera.
QString shownId(const gige::DiscoveredCamera& camera);

} // namespace cli
