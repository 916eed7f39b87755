/* Stands in for the program that shows the sequencer's ports to JACK, with the names that a2jmidid
   gives them: for each port of the sequencer client an output and an input that do nothing.

   bridge CLIENT PORT...  */

#include <jack/jack.h>
#include <stdio.h>
#include <unistd.h>

static int Process(jack_nframes_t frames, void* context) {
    (void)frames;
    (void)context;
    return 0;
}

int main(int count, char** arguments) {
    jack_client_t* client = jack_client_open("a2j", JackNoStartServer, NULL);
    if (!client || count < 3)
        return 1;
    jack_set_process_callback(client, Process, NULL);
    for (int i = 2; i < count; ++i) {
        char name[128];
        snprintf(name, sizeof name, "%s [130] (capture): %s", arguments[1], arguments[i]);
        jack_port_register(client, name, JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
        snprintf(name, sizeof name, "%s [130] (playback): %s", arguments[1], arguments[i]);
        jack_port_register(client, name, JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0);
    }
    jack_activate(client);
    for (;;)
        pause();
}
