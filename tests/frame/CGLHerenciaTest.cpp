// What a scene starts with, what a copy takes, and what a child inherits: field by field.

#include "EscenaPrueba.h"

#include <tuple>
#include <type_traits>

using Punto = EscenaPrueba::Punto;

namespace {

/// Shows the fields that only deriving scenes see.
struct Abierta : EscenaPrueba {
    using CGL::operator=;
    /// Numbers that a copy takes as they stand.
    auto Copiados() {
        return std::tie(m_bDCExterno, m_nMaxTexDim, m_nTipo, m_nTexturaFondo, m_nAncho, m_nAlto, m_nCotaRaster,
                        m_nAnchoImpresora, m_nAltoImpresora, m_fAnguloVista, m_dRangoX, m_dRangoY, m_dRangoZ, m_dFactor,
                        m_dFactorPantalla, m_fEscala, m_dAspecto, m_dZoom, m_fPlanoCerca, m_fPlanoFondo,
                        m_fExageracionVertical, m_nPuntosSuavizado, m_nVersionDigiTab, m_nVersionLidarTab,
                        m_nVersionEcoTab, m_bEsReferencia, m_nTipoImagenFondo, m_nListaMarcas, m_nListaPuntosMarcasFoto,
                        m_nListaPuntosMarcasTerreno, m_nListaLineaNueva, m_nListaCielo, m_nListaEjes, m_nListaCamara,
                        m_nListaCamaraPanoramica, m_nListaReserva, m_fSizeCamara, m_nListaLimites, m_bCerrarLineaNueva,
                        m_bVistaSeleccion, m_nTipoLineaNueva, m_dDistanciaEsferica, m_fRadioEsfera, m_nListaMedidas,
                        m_nHRCShared, m_nListaFuentes, m_nListaFuentesSeleccion, m_fEscalaFuente, m_bFuentes);
    }
    /// Numbers that a child inherits.
    auto Heredados() {
        return std::tie(m_fAnguloVista, m_dRangoX, m_dRangoY, m_dRangoZ, m_dFactor, m_dFactorPantalla, m_fEscala,
                        m_fPlanoCerca, m_fPlanoFondo, m_fExageracionVertical, m_nPuntosSuavizado, m_nVersionDigiTab,
                        m_nVersionLidarTab, m_nVersionEcoTab, m_bFuentes, m_fEscalaFuente);
    }
    /// Numbers that stay the child's own.
    auto Propios() {
        return std::tie(m_dAspecto, m_dZoom, m_nTipo, m_nTipoImagenFondo, m_bEsReferencia, m_nAncho, m_nAlto,
                        m_nListaEjes, m_nListaCamara, m_nListaMarcas, m_nListaLimites, m_nListaFuentes);
    }
    using CGL::m_bIniciarMalla;
    using CGL::m_bMaximasVacias;
    using CGL::m_DigiTabEfectiva;
    using CGL::m_PuntoGL;
};

/// Gives each field a value that it has nowhere by default.
template <class Campos>
void Marca(Campos campos) {
    std::apply(
        [n = 100](auto&... campo) mutable {
            ((campo = static_cast<std::remove_reference_t<decltype(campo)>>(++n)), ...);
        },
        campos);
}

}  // namespace

TEST(CGLHerencia, ANewSceneHasTheStatedDefaults) {
    struct Vista : Abierta {
        using CGL::operator=;
        void Comprueba() const {
            EXPECT_EQ(m_nCotaRaster, -9999);
            EXPECT_EQ(m_fAnguloVista, 45.0F);
            for (const double uno : {m_dFactor, m_dFactorPantalla, m_dAspecto, m_dZoom})
                EXPECT_EQ(uno, 1.0);
            for (const float uno : {m_fEscala, m_fExageracionVertical, m_fSizeCamara, m_fEscalaFuente})
                EXPECT_EQ(uno, 1.0F);
            for (const double cero : {m_dRangoX, m_dRangoY, m_dRangoZ})
                EXPECT_EQ(cero, 0.0);
            EXPECT_EQ(m_dDistanciaEsferica, 80.0);
            EXPECT_EQ(m_fRadioEsfera, 0.5F);
            EXPECT_TRUE(m_bMaximasVacias);
            EXPECT_TRUE(m_Maximas.EstanVacias(true));
            EXPECT_TRUE(m_bIniciarMalla);
            EXPECT_EQ(m_bFuentes, 0);
            EXPECT_EQ(m_nTipo, -1);
            EXPECT_EQ(m_nTipoImagenFondo, 0);
            EXPECT_EQ(m_DataTransformacion.m_UnidadAngular.GetCodigo(), 3);
            EXPECT_EQ(m_DataTransformacion.GetTipo(), 0);
            for (const auto* linea : {&m_LineaNueva, &m_LineaNuevaTerreno, &m_MarcasGL, &m_PuntosCamara,
                                      &m_PuntosCamaraGL, &m_AngulosCamara})
                EXPECT_EQ(linea->GetCodigo(), CString(L"nuevo"));
            EXPECT_NE(m_pBufferProfundidad, nullptr);
            EXPECT_EQ(m_phRCShared, nullptr);
        }
    };
    Vista().Comprueba();
}

TEST(CGLHerencia, ACopyTakesEveryNumberAsItStands) {
    Abierta original;
    Marca(original.Copiados());
    original.m_bIniciarMalla = false;
    original.m_PuntoGL = Punto(1, 2, 3);
    original.m_bMaximasVacias = false;
    Abierta construida(original), asignada;
    asignada = original;
    for (Abierta* copia : {&construida, &asignada}) {
        EXPECT_TRUE(copia->Copiados() == original.Copiados());
        EXPECT_FALSE(copia->m_bIniciarMalla);
        EXPECT_EQ(copia->m_PuntoGL, Punto(1, 2, 3));
        EXPECT_TRUE(copia->m_bMaximasVacias) << "what the copy has been shown is its own";
    }
}

TEST(CGLHerencia, AChildInheritsTheViewAndKeepsItsOwnProjectionListsAndKind) {
    Vertiz::CDigiTab tabla, lidar, eco;
    Abierta padre, hijo;
    Marca(padre.Copiados());
    padre.m_Data.m_nQuad = 3;
    padre.m_Camara.PositionCamera(Punto(0, 2, 0), Punto(0, 1, 0), Punto(0, 0, -1));
    padre.m_Maximas.Nuevo(Punto(1, 2, 3));
    padre.m_DataTransformacion.m_dFocal = 7.0;
    padre.m_DigiTabEfectiva.Inserta(Vertiz::CElementoDigiTab(0, L"x", 1, 2, 3, 1.0F, 0, L"", 1), false);
    padre.SetDigiTab(&tabla);
    padre.SetLidarTab(&lidar);
    padre.SetEcoTab(&eco);
    padre.SumaSeleccion(Vertiz::CPosicionEntidad(1));

    Abierta intacta;
    padre.SetVariablesReferencia(&hijo);
    EXPECT_TRUE(hijo.Heredados() == padre.Heredados());
    EXPECT_TRUE(hijo.Propios() == intacta.Propios());
    EXPECT_EQ(hijo.GetQuad(), 3U);
    EXPECT_EQ(hijo.m_Camara.View(), Punto(0, 1, 0));
    EXPECT_TRUE(hijo.m_Maximas == padre.m_Maximas);
    EXPECT_EQ(hijo.m_DataTransformacion.m_dFocal, 7.0);
    EXPECT_EQ(hijo.m_DigiTabEfectiva.Cantidad(), 1U);
    EXPECT_EQ(hijo.GetDigiTab(), &tabla);
    EXPECT_EQ(hijo.GetLidarTab(), &lidar);
    EXPECT_EQ(hijo.GetEcoTab(), &eco);
    EXPECT_TRUE(hijo.GetSeleccion().empty());
}
