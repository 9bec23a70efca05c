// Reads the values that players put on the bus. Players differ in types and spellings: a value of
// an unexpected type counts as missing, and nothing here fails.
#pragma once

#include "platform/linux/players/PlayerState.h"

#include <QVariant>
#include <QVariantMap>

#include <optional>
#include <string>

namespace sonvara {

/// The string-keyed map in `wrapped`, as it comes over the bus; absent if it is something else.
[[nodiscard]] std::optional<QVariantMap> decodeMap(const QVariant& wrapped);

/// A text as valid UTF-8, without white space and line ends at both ends, as polls are read: a notification
/// and a poll then say the same. Empty if `wrapped` is no text.
[[nodiscard]] std::string decodeText(const QVariant& wrapped);

/// The track described by the map `metadata`.
[[nodiscard]] Track decodeTrack(const QVariantMap& metadata);

/// What `properties`, some properties of a player, say of its state.
[[nodiscard]] StateChange decodeState(const QVariantMap& properties);

/// Some properties of a player, and what they say of its state.
struct StateMessage {
    QVariantMap properties;
    StateChange change;
};

/// The properties in `wrapped`, as they come over the bus; absent if it is something else.
[[nodiscard]] std::optional<StateMessage> decodeMessage(const QVariant& wrapped);

/// A volume, 1.0 for full, exactly as it was told; a negative one as 0.0. Absent if `value` is no finite number,
/// or a whole number on another scale.
[[nodiscard]] std::optional<double> decodeVolume(const QVariant& value);

}  // namespace sonvara
