#pragma once
// Internal. Pictures and pens of cairo, owned.

#include <cairo.h>

#include <memory>

namespace plataforma {

struct LiberaCairo {
    void operator()(cairo_surface_t* s) const { cairo_surface_destroy(s); }
    void operator()(cairo_t* c) const { cairo_destroy(c); }
};
using SuperficieCairo = std::unique_ptr<cairo_surface_t, LiberaCairo>;
using LapizCairo = std::unique_ptr<cairo_t, LiberaCairo>;

}  // namespace plataforma
