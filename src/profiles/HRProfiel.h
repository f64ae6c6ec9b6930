#pragma once

#include "database/ProfielGegevens.h"

class HRdb;

/// One dike cross-section in memory: a run of points from the foreshore up the
/// dike, and what stands in front of it. Points are numbered from 1; points 1 to
/// `Voorland` lie on the foreshore, `Voorland` to the last on the dike, so that
/// the toe belongs to both.
///
/// Slopes are told as horizontal run over rise (1 in n): larger is flatter.
/// All arithmetic is in single precision, as the values are stored.
class HRProfiel {
public:
    /// What a coordinate or roughness outside the points reads as.
    static constexpr float kGeenPunt = -99999;

    const QString& Naam() const { return m_data.Naam; }
    void setNaam(const QString& value) { m_data.Naam = value; }
    const QString& Memo() const { return m_data.Memo; }
    void setMemo(const QString& value) { m_data.Memo = value; }
    qint16 Voorland() const { return m_data.Voorland; }
    void setVoorland(qint16 value) { m_data.Voorland = value; }
    bool Palenrij() const { return m_data.Palenrij; }
    void setPalenrij(bool value) { m_data.Palenrij = value; }
    float Paaldiameter() const { return m_data.Paaldiameter; }
    void setPaaldiameter(float value) { m_data.Paaldiameter = value; }
    float HartafstandPalen() const { return m_data.HartafstandPalen; }
    void setHartafstandPalen(float value) { m_data.HartafstandPalen = value; }
    bool Rietkraag() const { return m_data.Rietkraag; }
    void setRietkraag(bool value) { m_data.Rietkraag = value; }
    float VegetatieBreedte() const { return m_data.VegetatieBreedte; }
    void setVegetatieBreedte(float value) { m_data.VegetatieBreedte = value; }
    float AantalLevendeStengels() const { return m_data.AantalLevendeStengels; }
    void setAantalLevendeStengels(float value) { m_data.AantalLevendeStengels = value; }
    float SeizoensinvloedFactor() const { return m_data.SeizoensinvloedFactor; }
    void setSeizoensinvloedFactor(float value) { m_data.SeizoensinvloedFactor = value; }
    float KruinBreedte() const { return m_data.KruinBreedte; }
    void setKruinBreedte(float value) { m_data.KruinBreedte = value; }
    float Taludhelling() const { return m_data.Taludhelling; }
    void setTaludhelling(float value) { m_data.Taludhelling = value; }
    qint16 Constructietype() const { return m_data.Constructietype; }
    void setConstructietype(qint16 value) { m_data.Constructietype = value; }
    qint16 Damtype() const { return m_data.Damtype; }
    void setDamtype(qint16 value) { m_data.Damtype = value; }
    qint16 Damwandmodule() const { return m_data.Damwandmodule; }
    void setDamwandmodule(qint16 value) { m_data.Damwandmodule = value; }
    float DamHoogte() const { return m_data.DamHoogte; }
    void setDamHoogte(float value) { m_data.DamHoogte = value; }

    bool HeeftDam() const { return m_data.Damtype >= 1; }
    bool HeeftVoorland() const { return m_data.Voorland >= 2; }
    qint16 AantalProfielpunten() const { return static_cast<qint16>(m_data.punten.size()); }
    qint16 AantalSegmentenVoorland() const { return static_cast<qint16>(m_data.Voorland - 1); }
    /// Level of the toe; kGeenPunt without points.
    float TeenHoogte() const { return Ycoord(AantalSegmentenVoorland() + 1); }

    /// kGeenPunt outside the points; setting there is ignored.
    float Xcoord(int index) const;
    void setXcoord(int index, float value);
    float Ycoord(int index) const;
    void setYcoord(int index, float value);
    float Ruwheid(int index) const;
    bool Gras(int index) const; ///< false outside the points

    /// Appends a point. Grass has roughness 1, whatever `r` says.
    void AddXYR(float x, float y, float r, bool gras);
    void ClearXYR() { m_data.punten.clear(); }

    /// Run over rise of the segment from point `index` to the next; 0 for a
    /// horizontal one, outside the points, and for the last point.
    float helling(int index) const;
    /// Moves the point behind segment `index` so that it gets slope `s`. Only
    /// that one point moves. A horizontal (or, for Y, vertical) segment stays.
    void SetX2ByHelling(int index, float s);
    /// As above by its level, which always rises; `s` 0 makes it horizontal.
    void SetY2ByHelling(int index, float s);

    /// Tests the rules of a valid profile. When one is broken the result is
    /// false, `melding` its number (texts in Profiel.ini) and `index` the
    /// offending point: a point of the profile for the foreshore, counted from
    /// the toe for the dike. No index is promised for 107.
    bool ControleerProfiel(int& melding, int& index) const;

    /// Reads the stored profile `naam` into this, new, object, which stays as it is when there is
    /// none. Errors of the database go up.
    void ReadFromHrDb(HRdb& database, const QString& naam);

    /// What is stored: HRdb::UpdateProfiel takes the profile by this.
    operator const ProfielGegevens&() const { return m_data; }

private:
    bool Bestaat(int index) const { return index >= 1 && index <= AantalProfielpunten(); }
    const ProfielPunt& Punt(int index) const { return m_data.punten[std::size_t(index) - 1]; }
    ProfielPunt& Punt(int index) { return m_data.punten[std::size_t(index) - 1]; }

    /// The first broken rule, 0 when none; over points first..last of the profile.
    int ControleerVoorland(int last, int& index) const;
    int ControleerDijk(int first, int& index) const;

    ProfielGegevens m_data;
};
