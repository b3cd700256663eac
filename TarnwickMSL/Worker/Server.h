// The worker's side of the connection.
#pragma once

namespace tarnwick::msl {

// Answers requests that arrive on `connection` until it closes.
void serve(int connection);

} // namespace tarnwick::msl
