#include <CoreMIDI/CoreMIDI.h>

int main(void) {
    return (int)MIDIGetNumberOfDevices();
}
