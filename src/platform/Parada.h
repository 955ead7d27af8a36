#pragma once
// Internal. Where a suspended thread stops; critical sections and waits share it.

namespace plataforma {

/// Stops here while the calling thread is suspended and holds no critical section.
void PuntoDeParada();

/// Counts the critical sections that the calling thread holds.
void SeccionTomada();
void SeccionDejada();

}  // namespace plataforma
