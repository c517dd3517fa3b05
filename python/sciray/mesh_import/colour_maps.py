"""colour_maps.py - the perceptual colour maps the importer colours bands with.

Each map is a table of 256 colours, 8 bits per channel, from the low end of
the range to the high end. viridis, cividis and magma are the maps made for
matplotlib (public domain); coolwarm is Moreland's diverging map. A map is
sampled between table entries by linear interpolation."""
import numpy as np

_TABLES = {
    "viridis": """
        440154 440256 450457 450559 46075a 46085c 460a5d 460b5e 470d60 470e61 471063
        471164 471365 481467 481668 481769 48186a 481a6c 481b6d 481c6e 481d6f 481f70
        482071 482173 482374 482475 482576 482677 482878 482979 472a7a 472c7a 472d7b
        472e7c 472f7d 46307e 46327e 46337f 463480 453581 453781 453882 443983 443a83
        443b84 433d84 433e85 423f85 424086 424186 414287 414487 404588 404688 3f4788
        3f4889 3e4989 3e4a89 3e4c8a 3d4d8a 3d4e8a 3c4f8a 3c508b 3b518b 3b528b 3a538b
        3a548c 39558c 39568c 38588c 38598c 375a8c 375b8d 365c8d 365d8d 355e8d 355f8d
        34608d 34618d 33628d 33638d 32648e 32658e 31668e 31678e 31688e 30698e 306a8e
        2f6b8e 2f6c8e 2e6d8e 2e6e8e 2e6f8e 2d708e 2d718e 2c718e 2c728e 2c738e 2b748e
        2b758e 2a768e 2a778e 2a788e 29798e 297a8e 297b8e 287c8e 287d8e 277e8e 277f8e
        27808e 26818e 26828e 26828e 25838e 25848e 25858e 24868e 24878e 23888e 23898e
        238a8d 228b8d 228c8d 228d8d 218e8d 218f8d 21908d 21918c 20928c 20928c 20938c
        1f948c 1f958b 1f968b 1f978b 1f988b 1f998a 1f9a8a 1e9b8a 1e9c89 1e9d89 1f9e89
        1f9f88 1fa088 1fa188 1fa187 1fa287 20a386 20a486 21a585 21a685 22a785 22a884
        23a983 24aa83 25ab82 25ac82 26ad81 27ad81 28ae80 29af7f 2ab07f 2cb17e 2db27d
        2eb37c 2fb47c 31b57b 32b67a 34b679 35b779 37b878 38b977 3aba76 3bbb75 3dbc74
        3fbc73 40bd72 42be71 44bf70 46c06f 48c16e 4ac16d 4cc26c 4ec36b 50c46a 52c569
        54c568 56c667 58c765 5ac864 5cc863 5ec962 60ca60 63cb5f 65cb5e 67cc5c 69cd5b
        6ccd5a 6ece58 70cf57 73d056 75d054 77d153 7ad151 7cd250 7fd34e 81d34d 84d44b
        86d549 89d548 8bd646 8ed645 90d743 93d741 95d840 98d83e 9bd93c 9dd93b a0da39
        a2da37 a5db36 a8db34 aadc32 addc30 b0dd2f b2dd2d b5de2b b8de29 bade28 bddf26
        c0df25 c2df23 c5e021 c8e020 cae11f cde11d d0e11c d2e21b d5e21a d8e219 dae319
        dde318 dfe318 e2e418 e5e419 e7e419 eae51a ece51b efe51c f1e51d f4e61e f6e620
        f8e621 fbe723 fde725
""",
    "cividis": """
        00224e 00234f 002451 002553 002554 002656 002758 002859 00285b 00295d 002a5f
        002a61 002b62 002c64 002c66 002d68 002e6a 002e6c 002f6d 00306f 003070 003170
        003171 013271 053371 083370 0c3470 0f3570 123570 143670 163770 18376f 1a386f
        1c396f 1e3a6f 203a6f 213b6e 233c6e 243c6e 263d6e 273e6e 293f6e 2a3f6d 2b406d
        2d416d 2e416d 2f426d 31436d 32436d 33446d 34456c 35456c 36466c 38476c 39486c
        3a486c 3b496c 3c4a6c 3d4a6c 3e4b6c 3f4c6c 404c6c 414d6c 424e6c 434e6c 444f6c
        45506c 46516c 47516c 48526c 49536c 4a536c 4b546c 4c556c 4d556c 4e566c 4f576c
        50576c 51586d 52596d 535a6d 545a6d 555b6d 555c6d 565c6d 575d6d 585e6d 595e6e
        5a5f6e 5b606e 5c616e 5d616e 5e626e 5e636f 5f636f 60646f 61656f 62656f 636670
        646770 656870 656870 666970 676a71 686a71 696b71 6a6c71 6b6d72 6c6d72 6c6e72
        6d6f72 6e6f73 6f7073 707173 717274 727274 727374 737475 747475 757575 767676
        777776 777777 787877 797977 7a7a78 7b7a78 7c7b78 7d7c78 7e7c78 7e7d78 7f7e78
        807f78 817f78 828079 838179 848279 858279 868379 878478 888578 898578 8a8678
        8b8778 8c8878 8d8878 8e8978 8f8a78 908b78 918b78 928c78 928d78 938e78 948e77
        958f77 969077 979177 989277 999277 9a9376 9b9476 9c9576 9d9576 9e9676 9f9775
        a09875 a19975 a29975 a39a74 a49b74 a59c74 a69c74 a79d73 a89e73 a99f73 aaa073
        aba072 aca172 ada272 aea371 afa471 b0a571 b1a570 b3a670 b4a76f b5a86f b6a96f
        b7a96e b8aa6e b9ab6d baac6d bbad6d bcae6c bdae6c beaf6b bfb06b c0b16a c1b26a
        c2b369 c3b369 c4b468 c5b568 c6b667 c7b767 c8b866 c9b965 cbb965 ccba64 cdbb63
        cebc63 cfbd62 d0be62 d1bf61 d2c060 d3c05f d4c15f d5c25e d6c35d d7c45c d9c55c
        dac65b dbc75a dcc859 ddc858 dec958 dfca57 e0cb56 e1cc55 e2cd54 e4ce53 e5cf52
        e6d051 e7d150 e8d24f e9d34e ead34c ebd44b edd54a eed649 efd748 f0d846 f1d945
        f2da44 f3db42 f5dc41 f6dd3f f7de3e f8df3c f9e03a fbe138 fce236 fde334 fee434
        fee535 fee636 fee838
""",
    "magma": """
        000004 010005 010106 010108 020109 02020b 02020d 03030f 030312 040414 050416
        060518 06051a 07061c 08071e 090720 0a0822 0b0924 0c0926 0d0a29 0e0b2b 100b2d
        110c2f 120d31 130d34 140e36 150e38 160f3b 180f3d 19103f 1a1042 1c1044 1d1147
        1e1149 20114b 21114e 221150 241253 251255 271258 29115a 2a115c 2c115f 2d1161
        2f1163 311165 331067 341069 36106b 38106c 390f6e 3b0f70 3d0f71 3f0f72 400f74
        420f75 440f76 451077 471078 491078 4a1079 4c117a 4e117b 4f127b 51127c 52137c
        54137d 56147d 57157e 59157e 5a167e 5c167f 5d177f 5f187f 601880 621980 641a80
        651a80 671b80 681c81 6a1c81 6b1d81 6d1d81 6e1e81 701f81 721f81 732081 752181
        762181 782281 792282 7b2382 7c2382 7e2482 802582 812581 832681 842681 862781
        882781 892881 8b2981 8c2981 8e2a81 902a81 912b81 932b80 942c80 962c80 982d80
        992d80 9b2e7f 9c2e7f 9e2f7f a02f7f a1307e a3307e a5317e a6317d a8327d aa337d
        ab337c ad347c ae347b b0357b b2357b b3367a b5367a b73779 b83779 ba3878 bc3978
        bd3977 bf3a77 c03a76 c23b75 c43c75 c53c74 c73d73 c83e73 ca3e72 cc3f71 cd4071
        cf4070 d0416f d2426f d3436e d5446d d6456c d8456c d9466b db476a dc4869 de4968
        df4a68 e04c67 e24d66 e34e65 e44f64 e55064 e75263 e85362 e95462 ea5661 eb5760
        ec5860 ed5a5f ee5b5e ef5d5e f05f5e f1605d f2625d f2645c f3655c f4675c f4695c
        f56b5c f66c5c f66e5c f7705c f7725c f8745c f8765c f9785d f9795d f97b5d fa7d5e
        fa7f5e fa815f fb835f fb8560 fb8761 fc8961 fc8a62 fc8c63 fc8e64 fc9065 fd9266
        fd9467 fd9668 fd9869 fd9a6a fd9b6b fe9d6c fe9f6d fea16e fea36f fea571 fea772
        fea973 feaa74 feac76 feae77 feb078 feb27a feb47b feb67c feb77e feb97f febb81
        febd82 febf84 fec185 fec287 fec488 fec68a fec88c feca8d fecc8f fecd90 fecf92
        fed194 fed395 fed597 fed799 fed89a fdda9c fddc9e fddea0 fde0a1 fde2a3 fde3a5
        fde5a7 fde7a9 fde9aa fdebac fcecae fceeb0 fcf0b2 fcf2b4 fcf4b6 fcf6b8 fcf7b9
        fcf9bb fcfbbd fcfdbf
""",
    "coolwarm": """
        3b4cc0 3c4ec2 3d50c3 3e51c5 3f53c6 4055c8 4257c9 4358cb 445acc 455cce 465ecf
        485fd1 4961d2 4a63d3 4b64d5 4c66d6 4e68d8 4f69d9 506bda 516ddb 536edd 5470de
        5572df 5673e0 5875e1 5977e3 5a78e4 5b7ae5 5d7ce6 5e7de7 5f7fe8 6180e9 6282ea
        6384eb 6485ec 6687ed 6788ee 688aef 6a8bef 6b8df0 6c8ff1 6e90f2 6f92f3 7093f3
        7295f4 7396f5 7597f6 7699f6 779af7 799cf8 7a9df8 7b9ff9 7da0f9 7ea1fa 80a3fa
        81a4fb 82a6fb 84a7fc 85a8fc 86a9fc 88abfd 89acfd 8badfd 8caffe 8db0fe 8fb1fe
        90b2fe 92b4fe 93b5fe 94b6ff 96b7ff 97b8ff 98b9ff 9abbff 9bbcff 9dbdff 9ebeff
        9fbfff a1c0ff a2c1ff a3c2fe a5c3fe a6c4fe a7c5fe a9c6fd aac7fd abc8fd adc9fd
        aec9fc afcafc b1cbfc b2ccfb b3cdfb b5cdfa b6cefa b7cff9 b9d0f9 bad0f8 bbd1f8
        bcd2f7 bed2f6 bfd3f6 c0d4f5 c1d4f4 c3d5f4 c4d5f3 c5d6f2 c6d6f1 c7d7f0 c9d7f0
        cad8ef cbd8ee ccd9ed cdd9ec cedaeb cfdaea d1dae9 d2dbe8 d3dbe7 d4dbe6 d5dbe5
        d6dce4 d7dce3 d8dce2 d9dce1 dadce0 dbdcde dcdddd dddcdc dedcdb dfdbd9 e0dbd8
        e1dad6 e2dad5 e3d9d3 e4d9d2 e5d8d1 e6d7cf e7d7ce e8d6cc e9d5cb ead5c9 ead4c8
        ebd3c6 ecd3c5 edd2c3 edd1c2 eed0c0 efcfbf efcebd f0cdbb f1cdba f1ccb8 f2cbb7
        f2cab5 f2c9b4 f3c8b2 f3c7b1 f4c6af f4c5ad f5c4ac f5c2aa f5c1a9 f5c0a7 f6bfa6
        f6bea4 f6bda2 f7bca1 f7ba9f f7b99e f7b89c f7b79b f7b599 f7b497 f7b396 f7b194
        f7b093 f7af91 f7ad90 f7ac8e f7aa8c f7a98b f7a889 f7a688 f6a586 f6a385 f6a283
        f5a081 f59f80 f59d7e f59c7d f49a7b f4987a f39778 f39577 f39475 f29274 f29072
        f18f71 f18d6f f08b6e f08a6c ef886b ee8669 ee8468 ed8366 ec8165 ec7f63 eb7d62
        ea7b60 e97a5f e9785d e8765c e7745b e67259 e57058 e46e56 e36c55 e36b54 e26952
        e16751 e0654f df634e de614d dd5f4b dc5d4a da5a49 d95847 d85646 d75445 d65244
        d55042 d44e41 d24b40 d1493f d0473d cf453c cd423b cc403a cb3e38 ca3b37 c83836
        c73635 c53334 c43032 c32e31 c12b30 c0282f be242e bd1f2d bb1b2c ba162b b8122a
        b70d28 b50927 b40426
""",}

NAMES = tuple(_TABLES)


def _table(name):
    colours = np.array([int(h, 16) for h in _TABLES[name].split()])
    rgb = np.stack([(colours >> 16) & 255, (colours >> 8) & 255, colours & 255], axis=1)
    return rgb / 255.0


def sample(name, positions):
    """Colours of the map at positions from 0 (low end) to 1 (high end), one row each."""
    table = _table(name)
    where = np.clip(np.asarray(positions, dtype=float), 0.0, 1.0) * (len(table) - 1)
    return np.stack([np.interp(where, np.arange(len(table)), table[:, c]) for c in range(3)], axis=1)
