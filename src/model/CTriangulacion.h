#pragma once
// Makes a triangulated terrain from a drawing.

#include "model/CDataTriangulacion.h"
#include "model/CDibujo.h"
#include "model/CInformeTriangulacion.h"
#include "model/CTIN.h"

#include <vector>

namespace Vertiz {

class IPorcentaje;

/// Delaunay triangulation of points, constrained to lines.
///
/// Every decision is exact on the integers given, whatever their size, and the triangles depend on places and lines
/// alone, not on their order: where four points lie on a circle, the one of the largest x, then y, is cut off. Points
/// on one place in plan are one vertex, of the height of the first of them. A line that passes through points is
/// followed in pieces, lines may touch and run along each other and themselves, and segments without length don't
/// count.
///
/// Where lines cross between points they get a common vertex: the place is rounded to integers, and the lines are bent
/// to it. It has the mean height of the lines that pass there, or that of the point which lies there already. A line
/// that is bent passes through all points within half a unit of it, in x and in y, too; so bent lines stay within half
/// a unit of where they were, and no others are moved. Nothing else adds a vertex.
///
/// Time goes with n log n; a long line between dense points may take more, since the triangles that it cuts are made
/// anew, and lines that cross take time for each crossing.
class LUMBRA_API CTriangulacion {
  public:
    explicit CTriangulacion(const CDataTriangulacion& data = CDataTriangulacion()) : m_Data(data) {}

    /// Triangulates the lines and clouds of a drawing that are not erased.
    /// @param dibujo      texts are passed over; lines of one point give a vertex only; clouds give theirs, with
    ///                    intensity, class and colour
    /// @param tin         out: its former content goes. Points in line give no triangles
    /// @param modo        0 follows the lines, 1 takes only their points
    /// @param porcentaje  progress (level 3), cancel and messages, or null
    /// @param distancia   stored units; points closer than this in plan count as one. Different integers are at least 1
    ///                    apart: the usual 0.1, as any value up to 1, joins equal points only; larger ones are refused
    /// @param cruces      may be null: gets a line of one point, of code "CRUCE", for each place where lines cross
    ///                    between points
    /// @return 1 done; 0 lines cross and may not, or too often, distancia is too large, or there are more than 250
    ///         million points: tin is empty then; 2 cancelled, tin is empty
    int Run(const CDibujo<int>& dibujo, CTIN& tin, int modo, IPorcentaje* porcentaje, double distancia,
            CDibujo<int>* cruces);

    /// The same for points by themselves, as those of a scanner, and the lines of a drawing after them.
    /// @param puntos  their numbers don't count; those that are deleted are left out
    int Run(std::vector<CPuntoTIN> puntos, const CDibujo<int>& dibujo, CTIN& tin, IPorcentaje* porcentaje,
            CDibujo<int>* cruces);

    /// What the last run came upon.
    [[nodiscard]] const CInformeTriangulacion& GetInforme() const { return m_Informe; }
    /// Sets the level of messages, 0 for none, and returns the one before.
    CNivelMensajes Mensajes(CNivelMensajes nivel);

  private:
    int Corre(std::vector<CPuntoTIN> puntos, const CDibujo<int>& dibujo, int modo, CTIN& tin, IPorcentaje* porcentaje,
              CDibujo<int>* cruces);

    CDataTriangulacion m_Data;
    CInformeTriangulacion m_Informe;
    CNivelMensajes m_nMensajes = 1;
};

}  // namespace Vertiz
