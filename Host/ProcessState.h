#pragma once

namespace OrvaneHost {

/// Opens each standard stream that is closed as a file that can only be read. Otherwise the next file or connection
/// would get its number, and be written into; so writing fails instead.
void occupyStandardStreams();

/// Keeps what a crash leaves behind, and the memory itself, from the user's other programs: both hold the user's token.
void keepMemoryPrivate();

} // namespace OrvaneHost
