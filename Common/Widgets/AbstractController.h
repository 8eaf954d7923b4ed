#pragma once

#include <QPoint>
#include <QString>
#include <Qt>

#include "Interfaces/IPrmObserver.h"

class IMemAPI;

namespace CommonController_MemAPI {

// The value protocol every control shares. A control holds an integer value
// with a range and a default and can be bound to one parameter of the host's
// parameter memory. Bound, the getters answer what the host last reported
// (read once when bound, then pushed through Update()) and every write goes
// to the host; the control changes its look only when the host confirms.
// Unbound, the control keeps its value itself.
class AbstractController : public IPrmObserver
{
public:
    AbstractController();
    virtual ~AbstractController();

    AbstractController(const AbstractController &) = delete;
    AbstractController &operator=(const AbstractController &) = delete;

    int Update(unsigned short prmId, unsigned short ch, int value, const char *text) override;
    int UpdateProperty(unsigned short prmId, unsigned short ch, int min, int max, int def, bool enabled,
        const char *text) override;

    // Stores max(0.5, scale) and repaints when it changed.
    virtual void setScale(double scale) = 0;
    virtual void setMemAPIValue(
        IMemAPI *memAPI, unsigned short prmId, unsigned short ch, unsigned short index = 0);
    // Refreshes the look (valueChanged()) and emits the value signal.
    virtual void valueChangedRequest() = 0;
    virtual void valueChanged() { }
    virtual void beginEdit() { }
    virtual void endEdit() { }

    bool isBound() const;
    IMemAPI *memAPI() const { return m_pMemAPI; }
    unsigned short prmId() const { return m_prmId; }
    unsigned short ch() const { return m_ch; }
    unsigned short index() const { return m_index; }
    double scale() const { return m_scale; }

    int value() const;
    int minimumValue() const;
    int maximumValue() const;
    int defaultValue() const;
    void setValue(int value);
    void setMinimumValue(int minimum);
    void setMaximumValue(int maximum);
    void setDefaultValue(int value);

    float normalized() const;
    float defaultNormalized() const;
    void setNormalized(float normalized);
    void setDefaultNormalized(float normalized);

    QString string() const;
    void setString(const QString &string);

protected:
    // Stores the clamped scale; true when it changed.
    bool storeScale(double scale);

    // One user gesture: beginEdit(), the write, endEdit(), then
    // notifyModifiersChange() when modifiers were held and the value moved.
    void gestureSetValue(int value, Qt::KeyboardModifiers modifiers);
    // As above; the change is judged on the normalised value.
    void gestureSetNormalized(float normalized, Qt::KeyboardModifiers modifiers);
    void gestureSetDefault(Qt::KeyboardModifiers modifiers);
    // Whole value steps for a linear drag by `moved` pixels, right and up
    // increasing: a range of n values moves one step per 200 / n pixels (1 to
    // 20), at the control's scale, `fineFactor` times finer.
    int linearDragSteps(const QPoint &moved, double fineFactor) const;
    // Subclasses emit their modifiersChange(this, modifiers) signal here.
    virtual void notifyModifiersChange(Qt::KeyboardModifiers modifiers) = 0;

private:
    void readFromHost();
    void readValue();
    QString readString(int value) const;
    // Writes to the host; a write the host does not echo through Update()
    // is read back once, so the look follows what the host holds.
    void writeToHost(int value);

    int m_value = 0;
    int m_minimum = 0;
    int m_maximum = 100;
    int m_default = 0;
    QString m_string;
    double m_scale = 1.0;
    IMemAPI *m_pMemAPI = nullptr;
    unsigned short m_prmId = 0;
    unsigned short m_ch = 0; // tested as a signed 16-bit number
    unsigned short m_index = 0;
    bool m_echoed = false;
};

} // namespace CommonController_MemAPI
