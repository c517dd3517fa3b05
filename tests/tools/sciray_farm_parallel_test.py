#!/usr/bin/python3
# sciray_farm_parallel_test.py - sciray-farm's GNU parallel engine against an
# sshd that this test starts on the loopback address with throw-away keys
# and stops after it. The sshd runs in a mount namespace of its own where
# the test's scenes and pictures and the user's home are hidden under empty
# file systems, so the tasks work only if the farm really sends the scene
# and brings the bands back, as with hosts that share no file system.
import getpass
import os
import pwd
import shlex
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest
from unittest import mock

from farm_test_support import FARM, engine_checks, files_under, run, running, write_scene

PRIVILEGE_SEPARATION_DIR = '/run/sshd'  # sshd refuses to start without it


def free_port():
    with socket.socket() as s:
        s.bind(('127.0.0.1', 0))
        return s.getsockname()[1]


def accepts(port):
    try:
        socket.create_connection(('127.0.0.1', port), timeout=1).close()
        return True
    except OSError:
        return False


class parallel_engine(engine_checks, unittest.TestCase):

    @classmethod
    def setUpClass(cls):
        root = tempfile.mkdtemp(prefix='sciray-farm-ssh-')
        cls.addClassCleanup(shutil.rmtree, root)
        cls.tools = os.path.join(root, 'host')  # keys, sshd's files, the hosts file: seen by both sides
        cls.work = os.path.join(root, 'work')   # scenes and pictures: hidden from the ssh side
        os.makedirs(cls.tools)
        os.makedirs(cls.work)
        # GNU parallel keeps a little state in ~/.parallel; keep it in the test's own directory.
        home = mock.patch.dict(os.environ, HOME=cls.tools)
        home.start()
        cls.addClassCleanup(home.stop)

        key = os.path.join(cls.tools, 'user_key')
        for name in ('host_key', 'user_key'):
            run(['ssh-keygen', '-q', '-t', 'ed25519', '-N', '', '-f', os.path.join(cls.tools, name)]).check_returncode()
        shutil.copy(key + '.pub', os.path.join(cls.tools, 'authorized_keys'))
        port = free_port()
        config = os.path.join(cls.tools, 'sshd_config')
        with open(config, 'w') as f:
            f.write(f'ListenAddress 127.0.0.1\nPort {port}\nHostKey {cls.tools}/host_key\n'
                    f'AuthorizedKeysFile {cls.tools}/authorized_keys\nPidFile none\nUsePAM no\n'
                    'PasswordAuthentication no\nKbdInteractiveAuthentication no\n'
                    'PermitRootLogin prohibit-password\nStrictModes no\n')
        if not os.path.isdir(PRIVILEGE_SEPARATION_DIR):
            os.makedirs(PRIVILEGE_SEPARATION_DIR, 0o755)
            cls.addClassCleanup(os.rmdir, PRIVILEGE_SEPARATION_DIR)
        cls.start_sshd(config, port)

        hosts = os.path.join(cls.tools, 'hosts')
        with open(hosts, 'w') as f:
            f.write(f'ssh -p {port} -i {key} -o StrictHostKeyChecking=no -o UserKnownHostsFile=/dev/null '
                    f'-o BatchMode=yes -o LogLevel=ERROR {getpass.getuser()}@127.0.0.1\n')
        cls.engine = ['--engine', 'parallel', '--hosts', hosts]
        cls.ssh = ['ssh', '-p', str(port), '-i', key, '-o', 'StrictHostKeyChecking=no', '-o',
                   'UserKnownHostsFile=/dev/null', '-o', 'BatchMode=yes', '-o', 'LogLevel=ERROR', '127.0.0.1']

    @classmethod
    def start_sshd(cls, config, port):
        hidden = [cls.work, pwd.getpwuid(os.getuid()).pw_dir]
        mounts = ' && '.join(f'mount -t tmpfs tmpfs {shlex.quote(d)}' for d in hidden)
        log = open(os.path.join(cls.tools, 'sshd.log'), 'w')
        cls.addClassCleanup(log.close)
        sshd = subprocess.Popen(['unshare', '--mount', '--propagation', 'private', 'sh', '-c',
                                 f'{mounts} && exec /usr/sbin/sshd -D -e -f "$1"', 'sh', config],
                                stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        cls.addClassCleanup(cls.stop_sshd, sshd)
        deadline = time.monotonic() + 10
        while not accepts(port):
            if sshd.poll() is not None or time.monotonic() > deadline:
                with open(log.name) as f:
                    raise RuntimeError(f'sshd did not start: {f.read()}')
            time.sleep(0.1)

    @staticmethod
    def stop_sshd(sshd):
        sshd.terminate()
        try:
            sshd.wait(10)
        except subprocess.TimeoutExpired:
            sshd.kill()
            sshd.wait()

    def test_a_signal_stops_the_remote_bands(self):
        pids = os.path.join(self.tools, 'pids')
        slow = os.path.join(self.tools, 'slow-sciray')
        with open(slow, 'w') as f:
            f.write(f'#!/bin/sh\nprintf partial >"$2"\necho $$ >>{pids}\nexec sleep 60\n')
        os.chmod(slow, 0o755)
        scene = write_scene(os.path.join(self.fresh_dir('signal'), 's.ren'))
        out = os.path.join(self.work, 'signal', 'out')
        with tempfile.TemporaryFile('w+') as errors:  # the tasks hold it open too: not a pipe
            farm = subprocess.Popen([FARM, *self.engine, '--bands', '2', '--out', out, scene], stdout=subprocess.DEVNULL,
                                    stderr=errors, env=dict(os.environ, SCIRAY=slow))
            deadline = time.monotonic() + 60
            while not (os.path.exists(pids) and len(open(pids).readlines()) == 2) and time.monotonic() < deadline:
                time.sleep(0.05)
            farm.send_signal(signal.SIGTERM)
            farm.wait(timeout=60)
            errors.seek(0)
            self.assertEqual(farm.returncode, -signal.SIGTERM, errors.read())
        # GNU parallel's wrapper on the host sees its ssh gone within a second and stops the band.
        with open(pids) as f:
            remote = [int(line) for line in f]
        deadline = time.monotonic() + 10
        while any(map(running, remote)) and time.monotonic() < deadline:
            time.sleep(0.05)
        self.assertEqual([pid for pid in remote if running(pid)], [])
        self.assertEqual(files_under(out), [])

    def test_the_ssh_side_sees_no_file_of_this_side(self):
        marker = os.path.join(self.work, 'marker')
        open(marker, 'w').close()
        self.assertEqual(run([*self.ssh, 'true']).returncode, 0)
        self.assertEqual(run([*self.ssh, 'test', '-e', marker]).returncode, 1)


if __name__ == '__main__':
    sys.exit(unittest.main())
