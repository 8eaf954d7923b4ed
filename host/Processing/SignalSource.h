#pragma once

// A programme that feeds the processing model: endless, two channels (a
// mono source writes the same samples to both), at its own sample rate.
class SignalSource
{
public:
    virtual ~SignalSource() = default;

    virtual double sampleRate() const = 0;
    virtual void render(float *left, float *right, int frames) = 0;
};
