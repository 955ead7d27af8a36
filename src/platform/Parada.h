#pragma once
// Where a suspended thread stops. Internal: critical sections and waits share it.

namespace hilos {

/// Stops here while the calling thread is suspended and holds no critical section.
void PuntoDeParada();

/// Counts the critical sections that the calling thread holds.
void SeccionTomada();
void SeccionDejada();

}  // namespace hilos
